#pragma once

#include "CoreData/Context/NSManagedObjectContext.h"
#include "OxKit/Platform.h"
#include "VelloroCore/Progress/TimedTaskManagerEntry.h"
#include "VelloroCore/Status/PeriodClosing.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace velloro {

class TaskEntity;
class TaskLogEntryEntity;

/// Closes the periods of a task that have ended without a full entry, by writing one full entry for
/// each: a miss or a skip, depending on the task's skip mode. For a negative task that stayed
/// clean, it is a completion instead of the miss.
///
/// A clock more than 150 years ahead of the log would close tens of thousands of periods: `close`
/// fails with a `HostError` then, and `foresee` reports why it leaves the task as it is stored.
///
/// Streaks depend on full entries alone, so periods are closed before anything else is read or
/// written on a new day. They are also closed before a task is paused or resumed, so that past
/// periods are closed as the task was then.
///
///     PeriodCloser(*context, now).close(*task);             // in the store, within a transaction
///     PeriodCloser(*context, now).foresee(*task).size();    // 0: in memory alone
///
/// After a clock was set ahead and is right again, there may be closing entries of periods that
/// have not ended. These are removed, and no others: only entries with the identifier that
/// `closingEntryID` returns. A command with a given time (`--now`) removes none, and neither does
/// any command while the store has an entry made by hand that is newer than the clock, since then
/// the clock may be wrong.
class PeriodCloser {
 public:
  /// \param now The instant by which it goes, whenever it is asked.
  PeriodCloser(NSManagedObjectContext& context, Date now) : context_(context), now_(now) {}

  /// Within a transaction. Returns whether the log has changed; if so, the caller calls
  /// `updateDerivedData`.
  bool close(TaskEntity& task);
  /// Makes the task answer as if its expired timers had been logged, and `close` and
  /// `updateDerivedData` been called, for a context that is not saved afterwards. Returns the
  /// entries that `close` would write.
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
  std::optional<std::vector<TimedTaskManagerEntry>> runs_;  // read when they are first asked for
};

/// Closes the task's past periods, and updates its temporal row if that changed the log or if the
/// task has none. Within a transaction.
void bringUpToDate(TaskEntity& task, Date now);

}  // namespace velloro
