#pragma once

#include "Foundation/Time/Date.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/Platform.h"
#include "OxKit/UniqueID.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "VelloroCore/Log/TaskLogEntryType.h"

#include <memory>
#include <optional>

namespace velloro {

class TaskEntity;

/// An entry that a user wants to write.
struct NewLogEntry {
  /// Absent for the next tap: a step or, if it is the last one, the completion; for a negative
  /// task, the corresponding misses.
  std::optional<TaskLogEntryType> type = {};
  YYYYMMDD date = {};
  /// When the entry is made. If another entry of the day has the same instant, this one counts as
  /// made after it.
  Date at;
  std::optional<double> amount = {};  ///< In the task's unit; absent for the default of the type.
  /// The seconds that a timer ran, in place of `amount`. What completes the completion under way,
  /// but for a hundredth of a second, counts as exactly that.
  std::optional<TimeInterval> timed = {};
  std::optional<UniqueID> id = {};  ///< Absent for a new one.
};

// These functions are called within `HostStore::write`, since what they write depends on the log at
// that moment. Before an entry is written or removed, the caller closes past periods
// (`PeriodCloser`); afterwards, it calls `updateDerivedData`.

/// Writes an entry for the period of the task that contains the day. `nextLogStep` decides its type
/// and its amount.
///
/// An entry contains its own amount and the period's total up to and including it: for a task of
/// eight glasses, the third step contains 1 and 3.
///
///     addLogEntry(*task, {.date = {2024, 3, 7}, .at = now}, now);
std::shared_ptr<TaskLogEntryEntity> addLogEntry(TaskEntity& task, const NewLogEntry& entry,
                                                Date now);

/// Removes the newest entry that the user made in the period with that day; null if there is none.
/// A past period may be open then, and is closed again with the next write.
std::shared_ptr<TaskLogEntryEntity> undoLogEntry(TaskEntity& task, YYYYMMDD date, Date now);

/// Updates the task's temporal row from its log, for the current logical day.
void updateDerivedData(TaskEntity& task, Date now);

}  // namespace velloro
