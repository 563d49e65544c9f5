#pragma once

#include "CoreData/NSPersistentStoreDescription.h"
#include "CoreData/StoreSchema.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace platform {

class StoreTransaction;

/// An open store: its connections, each used by one thread at a time, and the SQL of its entities.
/// From any thread.
class SqliteStore {
 public:
  [[nodiscard]] static Result<std::shared_ptr<SqliteStore>> open(
      const NSManagedObjectModel& model, const NSPersistentStoreDescription& description);

  /// What becomes of a connection when its lease ends: it is handed back, or without a store stays
  /// with the transaction that it belongs to.
  struct Return {
    SqliteStore* store = nullptr;

    void operator()(SqliteConnection* connection) const {
      if (store != nullptr) store->giveBack(std::unique_ptr<SqliteConnection>(connection));
    }
  };
  /// A connection in use. A thread takes one at a time: a store in memory has no second one.
  using Lease = std::unique_ptr<SqliteConnection, Return>;
  /// \param within Whose connection it is to be; null for any.
  [[nodiscard]] Result<Lease> lease(const StoreTransaction* within = nullptr);

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

  /// Of a transaction under way, and of none afterwards.
  void setWriter(std::thread::id writer) { writer_ = writer; }
  /// Whether the caller is within a transaction: it must not wait for another.
  [[nodiscard]] bool isWrittenByThisThread() const { return writer_ == std::this_thread::get_id(); }

 private:
  SqliteStore(const NSManagedObjectModel& model, SqliteLocation location);
  void giveBack(std::unique_ptr<SqliteConnection> connection);

  const NSManagedObjectModel& model_;
  const SqliteLocation location_;
  std::vector<EntityTable> tables_;  // by the entities' indexes
  std::atomic<std::thread::id> writer_;
  std::mutex mutex_;
  std::condition_variable returned_;
  std::vector<std::unique_ptr<SqliteConnection>> idle_;
};

}  // namespace platform
