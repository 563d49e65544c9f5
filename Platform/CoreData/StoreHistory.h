#pragma once

#include "CoreData/NSManagedObjectModel.h"
#include "CoreData/NSPersistentHistory.h"
#include "CoreData/Sqlite.h"

#include <set>

namespace platform {

/// What a save did, by object.
struct StoreChanges {
  std::set<NSManagedObjectID> inserted;
  std::set<NSManagedObjectID> updated;
  std::set<NSManagedObjectID> deleted;

  [[nodiscard]] bool empty() const {
    return inserted.empty() && updated.empty() && deleted.empty();
  }
  /// As history would tell it.
  [[nodiscard]] Notification notification() const;
};

/// The number of the newest transaction, 0 in a new store.
[[nodiscard]] Result<std::int64_t> newestTransaction(SqliteConnection& connection);

/// Appends a transaction, within the SQL transaction that has made the changes.
[[nodiscard]] Result<std::int64_t> appendTransaction(SqliteConnection& connection,
                                                     const StoreChanges& changes,
                                                     const std::string& author,
                                                     const std::string& contextName);

[[nodiscard]] Result<NSPersistentHistoryResult> readHistory(
    SqliteConnection& connection, const NSManagedObjectModel& model,
    const NSPersistentHistoryChangeRequest& request);

/// Sorted keys as a text that a person can read: "17,20-25".
[[nodiscard]] std::string keyRanges(const std::vector<std::int64_t>& keys);
[[nodiscard]] std::vector<std::int64_t> keysOf(std::string_view ranges);

}  // namespace platform
