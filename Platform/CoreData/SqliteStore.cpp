#include "CoreData/SqliteStore.h"

#include "CoreData/StoreHistory.h"
#include "CoreData/StoreTransaction.h"

namespace platform {

SqliteStore::SqliteStore(const NSManagedObjectModel& model, SqliteLocation location)
    : model_(model), location_(std::move(location)) {
  for (const NSEntityDescription* entity : model.entities()) tables_.emplace_back(*entity);
}

Result<std::shared_ptr<SqliteStore>> SqliteStore::open(
    const NSManagedObjectModel& model, const NSPersistentStoreDescription& description) {
  const bool isInMemory = description.type == NSInMemoryStoreType;
  SqliteLocation location{.path = isInMemory ? "" : description.url,
                          .busyTimeout = description.timeout};
  if (!isInMemory && description.url.empty()) {
    return failure<StoreError>(StoreError::Kind::cannotOpen, "a store's description has no file");
  }
  auto connection = SqliteConnection::open(location);
  if (!connection) return std::unexpected(connection.error());
  const bool mayComplete = description.shouldMigrateStoreAutomatically &&
                           description.shouldInferMappingModelAutomatically;
  if (auto complete = completeSchema(**connection, model, mayComplete); !complete) {
    return std::unexpected(complete.error());
  }
  const auto newest = newestTransaction(**connection);
  if (!newest) return std::unexpected(newest.error());
  std::shared_ptr<SqliteStore> store(new SqliteStore(model, std::move(location)));
  store->knownTransaction = *newest;
  store->giveBack(std::move(*connection));
  return store;
}

Result<SqliteStore::Lease> SqliteStore::lease(const StoreTransaction* within) {
  if (within != nullptr) return Lease(&within->connection(), Return());
  std::unique_lock lock(mutex_);
  if (location_.path.empty() && idle_.empty() && isWrittenByThisThread()) {
    return failure<StoreError>(StoreError::Kind::busy,
                               "another context of the same thread is writing to the store");
  }
  if (location_.path.empty()) returned_.wait(lock, [this] { return !idle_.empty(); });
  if (!idle_.empty()) {
    auto connection = std::move(idle_.back());
    idle_.pop_back();
    return Lease(connection.release(), Return(this));
  }
  lock.unlock();
  auto connection = SqliteConnection::open(location_);
  if (!connection) return std::unexpected(connection.error());
  return Lease(connection->release(), Return(this));
}

void SqliteStore::giveBack(std::unique_ptr<SqliteConnection> connection) {
  const std::scoped_lock lock(mutex_);
  idle_.push_back(std::move(connection));
  returned_.notify_one();
}

}  // namespace platform
