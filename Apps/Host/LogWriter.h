#pragma once

#include "Foundation/Date.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/Platform.h"
#include "Tasks/TaskEntity.h"
#include "Tasks/TaskLogEntryEntity.h"
#include "VelloroCore/TaskLogEntryType.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace velloro {

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
// that moment. Whoever writes, takes back or closes calls `updateDerivedData` when all of it is
// done.

/// Writes an entry for the period of the task that holds the day.
///
/// An entry holds its own amount and the period's total up to and with it. Of a task in eight
/// glasses, the third step holds 1 and 3. A completion holds what was left. A partial entry that
/// reaches the target is written as the full one, since only full entries settle a period.
///
///     addLogEntry(*task, {.date = today, .at = Date::now()});
std::shared_ptr<TaskLogEntryEntity> addLogEntry(TaskEntity& task, const NewLogEntry& entry);

/// Takes the newest entry back that the user made in the period with that day; null without one.
/// A past period may be open then, and is closed again at the next occasion.
std::shared_ptr<TaskLogEntryEntity> undoLogEntry(TaskEntity& task, YYYYMMDD date);

/// Settles the periods that have ended open since the host last did so, each by one full entry: a
/// miss, or a skip, as the task's skip mode says of it, and the completion of a negative task that
/// stayed clean. Returns how many.
///
/// Streaks go by full entries alone, so this comes before anything else is read or written on a new
/// day. Whoever pauses or resumes a task closes first: the periods behind are then closed as what
/// they were. An entry has the same identifier whichever process makes it, so that two that close
/// at once leave no doubt.
std::int64_t closePastPeriods(TaskEntity& task);

/// Rewrites what the task's temporal row tells of its log, for the logical day of now.
void updateDerivedData(TaskEntity& task);

/// Closes past periods, and rewrites the row where there were any.
void bringUpToDate(TaskEntity& task);

}  // namespace velloro
