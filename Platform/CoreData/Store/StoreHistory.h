#pragma once

#include "CoreData/Context/NSPersistentHistory.h"
#include "CoreData/Model/NSManagedObjectModel.h"
#include "SQLite/Sqlite.h"

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
  /// What was done after it, too. What came and went is none of either.
  void add(const StoreChanges& later);
  /// The notification with these changes.
  [[nodiscard]] Notification notification() const;
};

/// For how long history is kept, in seconds: 90 days. A reader that comes later, such as a widget
/// that was not on the screen for a season, refreshes all that it has, which costs it little more
/// than merging a season's history.
inline constexpr double historyAge = 90 * 86400.0;

/// The number of the newest transaction, 0 in a new store.
[[nodiscard]] Result<std::int64_t> newestTransaction(SqliteConnection& connection);

/// Appends a transaction, within the SQL transaction that has made the changes, and drops some of
/// those that are older than `historyAge`: more than one, so that all of them go in time, and few,
/// so that no save takes noticeably longer.
[[nodiscard]] Result<std::int64_t> appendTransaction(SqliteConnection& connection,
                                                     const StoreChanges& changes,
                                                     const std::string& author,
                                                     const std::string& contextName);

[[nodiscard]] Result<NSPersistentHistoryResult> readHistory(
    SqliteConnection& connection, const NSManagedObjectModel& model,
    const NSPersistentHistoryChangeRequest& request);

/// Sorted keys as a text that a person can read: "17,20-25".
[[nodiscard]] std::string keyRanges(const std::vector<std::int64_t>& keys);
/// Absent for any other text, and for keys beyond the last that was given out: such a text is
/// damaged, and may name more keys than there is memory for.
[[nodiscard]] std::optional<std::vector<std::int64_t>> keysOf(std::string_view ranges,
                                                              std::int64_t lastKey);

}  // namespace platform
