#pragma once

#include "Foundation/Time/Date.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/Platform.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "VelloroCore/Log/TaskLogEntryType.h"

#include <memory>
#include <optional>

namespace velloro {

class TaskEntity;

/// What a person says happened.
struct NewLogEntry {
  /// Absent for the next tap: a step, or, when that is the last one, the completion; of a negative
  /// task the same as misses.
  std::optional<TaskLogEntryType> type = {};
  YYYYMMDD date = {};
  /// When the entry is made; one of the same day and instant as another counts as made after it.
  Date at;
  std::optional<double> amount = {};  ///< In the task's unit; absent for what the type takes.
};

// All of this is called within `HostStore::write`: what is written follows from the log as it is at
// that moment. Whoever writes or takes back closes past periods before (`PeriodCloser`), and calls
// `updateDerivedData` when all of it is done.

/// Writes an entry for the period of the task that holds the day: `nextLogStep` says which.
///
/// An entry holds its own amount and the period's total up to and with it. Of a task in eight
/// glasses, the third step holds 1 and 3.
///
///     addLogEntry(*task, {.date = {2024, 3, 7}, .at = now});
std::shared_ptr<TaskLogEntryEntity> addLogEntry(TaskEntity& task, const NewLogEntry& entry);

/// Takes the newest entry back that the user made in the period with that day; null without one.
/// A past period may be open then, and is closed again at the next occasion.
std::shared_ptr<TaskLogEntryEntity> undoLogEntry(TaskEntity& task, YYYYMMDD date);

/// Rewrites what the task's temporal row tells of its log, for the logical day of now.
void updateDerivedData(TaskEntity& task);

}  // namespace velloro
