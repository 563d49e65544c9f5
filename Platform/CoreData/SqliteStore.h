#pragma once

#include "CoreData/NSPersistentStoreDescription.h"
#include "CoreData/StoreSchema.h"

#include <condition_variable>
#include <mutex>

namespace platform {

/// An open store: its connections, each used by one thread at a time, and the SQL of its entities.
/// From any thread.
class SqliteStore {
 public:
  [[nodiscard]] static Result<std::shared_ptr<SqliteStore>> open(
      const NSManagedObjectModel& model, const NSPersistentStoreDescription& description);

  /// A connection, handed back when the lease ends. A thread takes one at a time: a store in memory
  /// has no second one.
  class Lease {
   public:
    Lease(SqliteStore& store, std::unique_ptr<SqliteConnection> connection)
        : store_(&store), connection_(std::move(connection)) {}
    Lease(Lease&&) = default;
    Lease& operator=(Lease&&) = delete;
    ~Lease() {
      if (connection_) store_->giveBack(std::move(connection_));
    }
    SqliteConnection& operator*() const { return *connection_; }
    SqliteConnection* operator->() const { return connection_.get(); }

   private:
    SqliteStore* store_;
    std::unique_ptr<SqliteConnection> connection_;
  };
  [[nodiscard]] Result<Lease> lease();

  [[nodiscard]] const NSManagedObjectModel& model() const { return model_; }
  [[nodiscard]] const EntityTable& table(const NSEntityDescription& entity) const {
    return tables_[entity.index()];
  }
  [[nodiscard]] const std::filesystem::path& path() const { return location_.path; }

  /// Held by whoever writes, or looks for what others wrote: among the threads of a process, each
  /// waits its turn here and not in the file's busy loop.
  std::mutex writing;
  /// The newest transaction that this store wrote or has told of. Guarded by `writing`.
  std::int64_t knownTransaction = 0;

 private:
  SqliteStore(const NSManagedObjectModel& model, SqliteLocation location);
  void giveBack(std::unique_ptr<SqliteConnection> connection);

  const NSManagedObjectModel& model_;
  const SqliteLocation location_;
  std::vector<EntityTable> tables_;  // by the entities' indexes
  std::mutex mutex_;
  std::condition_variable returned_;
  std::vector<std::unique_ptr<SqliteConnection>> idle_;
};

}  // namespace platform
