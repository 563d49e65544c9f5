#include "DataManager/PersistentHistoryObserver.h"

#include "CoreData/Context/NSPersistentStoreCoordinator.h"
#include "DataManager/PersistentHistoryFetcher.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Values/Try.h"
#include "OxLog/Log.h"

#include <mutex>
#include <utility>

namespace velloro {
namespace {

using Context = std::shared_ptr<NSManagedObjectContext>;
using Transactions = std::vector<NSPersistentHistoryTransaction>;

void mergeInto(const Context& context, const Transactions& transactions) {
  for (const NSPersistentHistoryTransaction& transaction : transactions) {
    const Notification changes = transaction.objectIDNotification();
    if (changes.userInfo.empty()) continue;
    NSManagedObjectContext::mergeChangesFromRemoteContextSave(changes.userInfo, {context});
  }
}

}  // namespace

std::shared_ptr<PersistentHistoryObserver> PersistentHistoryObserver::make(
    Author target, std::shared_ptr<Container> persistentContainer, NSUserDefaults userDefaults) {
  return std::shared_ptr<PersistentHistoryObserver>(new PersistentHistoryObserver(
      target, std::move(persistentContainer), std::move(userDefaults)));
}

PersistentHistoryObserver::PersistentHistoryObserver(Author target,
                                                     std::shared_ptr<Container> container,
                                                     NSUserDefaults defaults)
    : target_(target),
      persistentContainer_(std::move(container)),
      userDefaults_(std::move(defaults)),
      store_(storeIdentity()),
      position_(bookmark()) {}

void PersistentHistoryObserver::startObserving() {
  token_ = NSNotificationCenter::defaultCenter().addObserver(
      NSPersistentStoreRemoteChangeNotification,
      persistentContainer_->persistentStoreCoordinator().get(), std::nullopt,
      [weak = weak_from_this()](const Notification&) {
        if (const auto self = weak.lock()) self->processStoreRemoteChanges();
      });
}

void PersistentHistoryObserver::processStoreRemoteChanges() {
  std::call_once(queueMade_, [this] {
    historyQueue_ = std::make_unique<NSOperationQueue>("velloro.history");
    historyQueue_->setMaxConcurrentOperationCount(1);
  });
  historyQueue_->addOperation([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->processPersistentHistory();
  });
}

void PersistentHistoryObserver::processPersistentHistory() {
  // An observer that has just been replaced may still be at work, on the same bookmark.
  static std::mutex merging;
  const std::scoped_lock lock(merging);
  const auto background = persistentContainer_->newBackgroundContext();
  const auto merged = background->performAndWait(
      [&] { return merge(background, persistentContainer_->viewContext()); });
  if (!merged) Log::database.error(merged.error());
}

Result<void> PersistentHistoryObserver::merge(const Context& background, const Context& view) {
  if (auto store = storeIdentity(); store != store_) {  // another file has taken its place
    store_ = std::move(store);
    position_ = bookmark();
  }
  auto fetched = TRY(PersistentHistoryFetcher{background, position_}.fetch());
  if (fetched.transactions.empty()) return {};
  const auto transactions = std::make_shared<const Transactions>(std::move(fetched.transactions));
  Log::database.debug([&] {
    return "Merging " + std::to_string(transactions->size()) +
           " persistent history transactions for target " + std::string(rawValue(target_));
  });
  mergeInto(background, *transactions);
  if (fetched.damage != nullptr) Log::database.error(fetched.damage);
  view->perform([view, transactions, isComplete = fetched.isComplete] {
    if (!isComplete) view->refreshAllObjects();
    mergeInto(view, *transactions);
  });
  moveTo(transactions->back().timestamp);
  return {};
}

// Another observer's bookmark may be further on already.
void PersistentHistoryObserver::moveTo(Date position) {
  position_ = position;
  if (position <= bookmark()) return;
  userDefaults_.setObjects({{bookmarkKey(target_), position}, {storeKey(target_), store_}});
}

std::string PersistentHistoryObserver::storeIdentity() const {
  const auto& stores = persistentContainer_->persistentStoreDescriptions();
  return stores.empty() ? "" : NSFileManager::identity(stores.front().url);
}

/// Programs until now kept no name of a file; theirs counts. Saves of one instant are told apart by
/// timestamps that are a trifle later.
Date PersistentHistoryObserver::bookmark() const {
  const auto kept = userDefaults_.objectForKey(bookmarkKey(target_));
  constexpr TimeInterval trifle = 1;
  const auto date = kept ? kept->date() : std::nullopt;
  const bool counts = userDefaults_.stringForKey(storeKey(target_)).value_or(store_) == store_;
  return date && counts && *date < Date::now() + trifle ? *date : Date::distantPast();
}

std::string PersistentHistoryObserver::bookmarkKey(Author target) {
  return "lastHistoryTransactionTimeStamp-" + std::string(rawValue(target));
}

std::string PersistentHistoryObserver::storeKey(Author target) {
  return "lastHistoryTransactionStore-" + std::string(rawValue(target));
}

}  // namespace velloro
