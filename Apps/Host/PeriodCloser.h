#pragma once

#include "CoreData/Context/NSManagedObjectContext.h"
#include "OxKit/Platform.h"
#include "VelloroCore/Status/PeriodClosing.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace velloro {

class TaskEntity;
class TaskLogEntryEntity;

/// Closes the periods of a task that have ended without a full entry: writes one full entry for
/// each. It is a miss or a skip, as the task's skip mode says; for a negative task that stayed
/// clean it is a completion in place of the miss.
///
/// Both fail with a `HostError` where the clock is more than 150 years ahead of the log.
///
/// Streaks go by full entries alone, so this comes before anything else is read or written on a new
/// day. Whoever pauses or resumes a task closes first: the periods behind are then closed as what
/// they were.
///
///     PeriodCloser(*context, now).close(*task);             // in the store, within a transaction
///     PeriodCloser(*context, now).foresee(*task).size();    // 0: in memory alone
///
/// A clock that was set ahead, and is right again, leaves closing entries of periods that have not
/// ended. They are taken back, and nothing else is: only what carries the identifier that
/// `closingEntryID` gives. Not by a command that was told what time it is (`--now`), and not while
/// the store has an entry made by hand that is newer than the clock, since then it may be the clock
/// that is wrong.
class PeriodCloser {
 public:
  /// \param now The instant by which it goes, whenever it is asked.
  explicit PeriodCloser(NSManagedObjectContext& context, Date now = Date::now())
      : context_(context), now_(now) {}

  /// Within a transaction; whoever calls it calls `updateDerivedData` when something has changed.
  /// Whether the log has.
  bool close(TaskEntity& task);
  /// Lets the task answer as if `close` and `updateDerivedData` had been called, and changes
  /// nothing that could be saved. The entries that it would have.
  std::vector<PeriodClosing> foresee(TaskEntity& task);

 private:
  using Entries = std::vector<std::shared_ptr<TaskLogEntryEntity>>;
  struct Changes;

  [[nodiscard]] Changes changesOf(const TaskEntity& task);
  [[nodiscard]] bool isClockTrusted();
  [[nodiscard]] Entries entriesAhead(const TaskEntity& task, const TaskLogRules& rules);

  NSManagedObjectContext& context_;
  Date now_;
  std::optional<bool> isClockTrusted_;
};

/// Closes the task's past periods, and rewrites its row where that changed the log or where it has
/// none. Within a transaction.
void bringUpToDate(TaskEntity& task);

}  // namespace velloro
