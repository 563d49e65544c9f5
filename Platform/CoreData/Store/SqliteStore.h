#pragma once

#include "CoreData/Context/NSPersistentStoreDescription.h"
#include "CoreData/Store/StoreFileState.h"
#include "CoreData/Store/StoreSchema.h"

#include <array>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace platform {

class StoreTransaction;

/// An open store: its connections, each used by one thread at a time, and the SQL of its entities.
/// From any thread.
///
/// When another file takes the name of the open file, as when a backup is restored, the next lease
/// opens that file: no save that begins later is written to the old file. While no file has the
/// name, leases fail.
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

  /// Called when another file has taken the name; on any thread, while locks are held.
  void setOnReplaced(std::function<void()> told) { onReplaced_ = std::move(told); }
  /// Whether the file, or its log, is no longer as it was when the store was opened.
  [[nodiscard]] bool hasBeenWritten() const;

  [[nodiscard]] const NSManagedObjectModel& model() const { return model_; }
  [[nodiscard]] const EntityTable& table(const NSEntityDescription& entity) const {
    return tables_[entity.index()];
  }
  [[nodiscard]] const std::filesystem::path& path() const { return location_.path; }

  /// Held while writing, or while checking for what others wrote, so that the threads of a process
  /// wait here and not in the busy loop of the file.
  std::mutex writing;
  /// The newest transaction that this store has written or reported. Guarded by `writing`.
  std::int64_t knownTransaction = 0;

  /// Of a transaction under way, and of none afterwards.
  void setWriter(std::thread::id writer) { writer_ = writer; }
  /// Whether the caller is within a transaction: it must not wait for another.
  [[nodiscard]] bool isWrittenByThisThread() const { return writer_ == std::this_thread::get_id(); }

 private:
  SqliteStore(const NSManagedObjectModel& model, SqliteLocation location, bool mayComplete);
  /// The file itself, its log, and the log's index.
  using Files = std::array<std::optional<StoreFileState>, 3>;

  [[nodiscard]] Files look() const;
  Result<std::unique_ptr<SqliteConnection>> openFile();
  [[nodiscard]] Result<std::unique_ptr<SqliteConnection>> connect(int file) const;
  Result<void> followReplacement();
  void dropOldFile();
  void giveBack(std::unique_ptr<SqliteConnection> connection);

  const NSManagedObjectModel& model_;
  const SqliteLocation location_;
  const bool mayComplete_;
  std::vector<EntityTable> tables_;  // by the entities' indexes
  std::atomic<std::thread::id> writer_;
  std::function<void()> onReplaced_;
  mutable std::mutex mutex_;  // guards what follows
  Files opened_;
  int file_ = 0;  // counts the files that have had the name
  std::condition_variable returned_;
  std::vector<std::unique_ptr<SqliteConnection>> idle_;
};

}  // namespace platform
