#include "DataManager/PersistentHistoryObserver.h"

#include "CoreData/NSPersistentStoreCoordinator.h"
#include "DataManager/PersistentHistoryFetcher.h"
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
  auto fetched = PersistentHistoryFetcher{background, position_}.fetch();
  if (!fetched) return std::unexpected(fetched.error());
  if (fetched->empty()) return {};
  const auto transactions = std::make_shared<const Transactions>(*std::move(fetched));
  Log::database.debug([&] {
    return "Merging " + std::to_string(transactions->size()) +
           " persistent history transactions for target " + std::string(rawValue(target_));
  });
  mergeInto(background, *transactions);
  view->perform([view, transactions] { mergeInto(view, *transactions); });
  moveTo(transactions->back().timestamp);
  return {};
}

// Another observer's bookmark may be further on already.
void PersistentHistoryObserver::moveTo(Date position) {
  position_ = position;
  if (position > bookmark()) userDefaults_.setObject(position, bookmarkKey(target_));
}

Date PersistentHistoryObserver::bookmark() const {
  const auto kept = userDefaults_.objectForKey(bookmarkKey(target_));
  return kept ? kept->date().value_or(Date::distantPast()) : Date::distantPast();
}

std::string PersistentHistoryObserver::bookmarkKey(Author target) {
  return "lastHistoryTransactionTimeStamp-" + std::string(rawValue(target));
}

}  // namespace velloro
