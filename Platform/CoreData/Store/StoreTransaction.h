#pragma once

#include "CoreData/Store/SqliteStore.h"
#include "CoreData/Store/StoreHistory.h"

#include <exception>
#include <memory>
#include <mutex>

namespace platform {

/// A write under way: the turn among the threads of the process, a connection, and on it a SQL
/// transaction that has the file to itself. It is undone unless it is committed. Of one thread.
class StoreTransaction {
 public:
  /// Waits for other writers. Null for `store` is a store that isn't open. Fails for a thread that
  /// has one already: it would wait for itself.
  [[nodiscard]] static Result<std::unique_ptr<StoreTransaction>> begin(
      std::shared_ptr<SqliteStore> store);
  ~StoreTransaction();
  StoreTransaction(const StoreTransaction&) = delete;
  StoreTransaction& operator=(const StoreTransaction&) = delete;

  [[nodiscard]] SqliteStore& store() const { return *store_; }
  [[nodiscard]] SqliteConnection& connection() const { return *connection_; }
  [[nodiscard]] Result<void> commit() { return sql_.commit(); }

  /// Of all that was written within it so far.
  StoreChanges written;

  /// \name What keeps it from being committed: the first thing that went wrong
  /// @{
  void fail(const ErrorPtr& error) {
    if (!hasFailed()) error_ = error;
  }
  void fail(std::exception_ptr thrown) {
    if (!hasFailed()) thrown_ = std::move(thrown);
  }
  [[nodiscard]] bool hasFailed() const { return error_ != nullptr || thrown_ != nullptr; }
  /// Returns the error, or throws again what was thrown; passes when nothing went wrong.
  [[nodiscard]] Result<void> outcome() const;
  /// @}

 private:
  StoreTransaction(std::shared_ptr<SqliteStore> store, std::unique_lock<std::mutex> writing,
                   SqliteStore::Lease connection, SqliteTransaction sql);

  // In the order in which they are taken: what is last goes first.
  const std::shared_ptr<SqliteStore> store_;
  const std::unique_lock<std::mutex> writing_;
  const SqliteStore::Lease connection_;
  SqliteTransaction sql_;
  ErrorPtr error_;
  std::exception_ptr thrown_;
};

}  // namespace platform
