#pragma once

#include "VelloroCore/Status/TaskLogCounts.h"
#include "VelloroCore/Status/TaskStanding.h"
#include "VelloroCore/Status/TaskStatus.h"

#include <vector>

namespace velloro {

class TaskEntity;

/// A task of the store as of one instant, its row decoded once. What is derived of a task is
/// derived from this; only what the log alone knows is fetched. The days of a stretch are counted
/// once, so a snapshot is not used beyond a change of the log.
///
///     const auto snapshot = TaskSnapshot::of(*task, now);
///     const auto period = snapshot.standing.currentPeriod().period;
///     streakedCompletionStatus(snapshot, period).streak.current;    // 0
///     willSkip(snapshot, period);    // SkipMode::willMissWithoutIndicator
struct TaskSnapshot {
  const TaskEntity* entity = nullptr;  ///< It must outlive the snapshot.
  TaskStanding standing = {};
  TaskStatus status = defaultStatus;
  TaskShareStatus shareStatus = TaskShareStatus::notShared;

  struct CountedDays {
    YYYYMMDD from, to;
    NumUniqueCompletions completions;
  };
  mutable std::vector<CountedDays> countedDays = {};  ///< So far.

  [[nodiscard]] static TaskSnapshot of(const TaskEntity& task, Date now);

  [[nodiscard]] DatedPeriod datedPeriod(YYYYMMDD day) const {
    return standing.frequency.period(day, standing.firstDayOfWeek, standing.timeZone);
  }
  /// That holds an instant's logical day.
  [[nodiscard]] TaskFrequencyPeriod period(Date date) const {
    return standing.frequency
        .period(standing.startOfDay, date, standing.firstDayOfWeek, standing.timeZone)
        .period;
  }
};

/// By what a task's log is read; less than the whole.
[[nodiscard]] TaskLogRules logRules(const TaskEntity& task, Date now);
/// \name Of its parts, where the one that they depend on is known
/// @{
[[nodiscard]] TaskFrequency decodedFrequency(const TaskEntity& task,
                                             const std::optional<AutomaticTaskType>& type);
[[nodiscard]] DayOfWeek decodedFirstDayOfWeek(const TaskEntity& task, DayMode mode);
/// @}

}  // namespace velloro
