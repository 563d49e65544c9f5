#include "CoreData/Context/NSPersistentStoreCoordinator.h"

#include "CoreData/Context/NSManagedObjectContext.h"
#include "CoreData/Store/SqliteStore.h"
#include "CoreData/Store/StoreCheck.h"
#include "CoreData/Store/StoreHistory.h"
#include "CoreData/Store/StoreWatch.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Values/Try.h"

namespace platform {

NSPersistentStoreCoordinator::NSPersistentStoreCoordinator(const NSManagedObjectModel& model)
    : model_(model) {}

NSPersistentStoreCoordinator::~NSPersistentStoreCoordinator() = default;

std::vector<std::filesystem::path> NSPersistentStoreCoordinator::persistentStores() const {
  const auto open = store();
  return open != nullptr ? std::vector{open->path()} : std::vector<std::filesystem::path>();
}

Result<void> NSPersistentStoreCoordinator::addPersistentStore(
    const NSPersistentStoreDescription& description) {
  if (store() != nullptr) {
    return failure<StoreError>(StoreError::Kind::cannotOpen, "the container has a store already");
  }
  auto opened = TRY(SqliteStore::open(model_, description));
  std::shared_ptr<StoreWatch> watch;
  if (description.type != NSInMemoryStoreType &&
      description.option(NSPersistentStoreRemoteChangeNotificationPostOptionKey)) {
    watch = beginWatch(*opened);
  }
  opened->setOnReplaced([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (self == nullptr) return;
    self->queue_.async([weak] {
      if (const auto later = weak.lock()) later->storeWasReplaced();
    });
  });
  const std::scoped_lock lock(mutex_);
  store_ = std::move(opened);
  watch_ = std::move(watch);
  return {};
}

std::shared_ptr<StoreWatch> NSPersistentStoreCoordinator::beginWatch(const SqliteStore& store) {
  return StoreWatch::begin(store.path(), [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->scheduleCheck();
  });
}

/// What the contexts hold is of a file that has gone, and so are its numbers.
void NSPersistentStoreCoordinator::storeWasReplaced() {
  const auto open = store();
  if (open == nullptr) return;
  {
    const std::scoped_lock writing(open->writing);
    open->knownTransaction = 0;
  }
  {
    const std::scoped_lock lock(mutex_);
    if (watch_ != nullptr) watch_ = beginWatch(*open);
  }
  for (const auto& context : contexts()) {
    context->perform([context = context.get()] { context->refreshAllObjects(); });
  }
  checkForRemoteChanges();
}

std::vector<std::shared_ptr<NSManagedObjectContext>> NSPersistentStoreCoordinator::contexts()
    const {
  const std::scoped_lock lock(mutex_);
  std::vector<std::shared_ptr<NSManagedObjectContext>> living;
  for (const auto& known : contexts_) {
    if (auto context = known.lock()) living.push_back(std::move(context));
  }
  return living;
}

std::shared_ptr<SqliteStore> NSPersistentStoreCoordinator::store() const {
  const std::scoped_lock lock(mutex_);
  return store_;
}

Result<void> NSPersistentStoreCoordinator::copyStore(const std::filesystem::path& to) const {
  const auto open = store();
  if (open == nullptr) return failure<StoreError>(StoreError::Kind::notOpen, "no store is open");
  const auto connection = TRY(open->lease());
  return connection->copyTo(to);
}

Result<std::vector<std::string>> NSPersistentStoreCoordinator::check() const {
  const auto open = store();
  if (open == nullptr) return failure<StoreError>(StoreError::Kind::notOpen, "no store is open");
  const auto connection = TRY(open->lease());
  return checkStore(*connection, model_);
}

bool NSPersistentStoreCoordinator::hasBeenWritten() const {
  const auto open = store();
  return open != nullptr && open->hasBeenWritten();
}

void NSPersistentStoreCoordinator::add(const std::shared_ptr<NSManagedObjectContext>& context) {
  const std::scoped_lock lock(mutex_);
  std::erase_if(contexts_, [](const auto& known) { return known.expired(); });
  contexts_.push_back(context);
}

void NSPersistentStoreCoordinator::scheduleCheck() {
  queue_.async([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->checkForRemoteChanges();
  });
}

void NSPersistentStoreCoordinator::checkForRemoteChanges() {
  const auto open = store();
  if (open == nullptr) return;
  if (open->isWrittenByThisThread()) return scheduleCheck();
  {
    const std::scoped_lock writing(open->writing);
    const auto connection = open->lease();
    const auto newest = connection ? newestTransaction(**connection) : Result<std::int64_t>(0);
    if (!newest) {
      return Environment::current().report("the history can't be read: " +
                                           newest.error()->localizedDescription());
    }
    if (*newest <= open->knownTransaction) return;
    open->knownTransaction = *newest;
  }
  postRemoteChange();
}

void NSPersistentStoreCoordinator::postRemoteChange() {
  NSNotificationCenter::defaultCenter().post(
      {.name = NSPersistentStoreRemoteChangeNotification, .object = this});
}

void NSPersistentStoreCoordinator::didSave(const NSManagedObjectContext& context,
                                           const StoreChanges& changes, std::int64_t transaction,
                                           bool othersHaveSaved) {
  std::shared_ptr<StoreWatch> watch;
  {
    const std::scoped_lock lock(mutex_);
    watch = watch_;
  }
  if (watch != nullptr) {
    watch->touch(transaction);
    if (othersHaveSaved) {
      queue_.async([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->postRemoteChange();
      });
    }
  }
  for (const auto& other : contexts()) {
    if (other.get() == &context || !other->automaticallyMergesChangesFromParent()) continue;
    other->perform([other = other.get(), notification = changes.notification()] {
      other->merge(notification.userInfo);
    });
  }
}

}  // namespace platform
