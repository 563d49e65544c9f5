#pragma once

#include "Foundation/Time/Date.h"
#include "VelloroCore/Log/TaskLogEntryType.h"
#include "VelloroCore/Progress/TaskProgress.h"

#include <optional>
#include <span>
#include <vector>

namespace velloro {

/// The types whose amounts are added to the total of a period: completions and timed stretches or,
/// for a negative task, misses and timed stretches. The amount of any other entry is stored, but
/// does not count.
[[nodiscard]] constexpr EnumSet<TaskLogEntryType> countedTypes(bool isNegative) {
  return TaskLogEntryTypes::allTimerTypes.union_(isNegative ? TaskLogEntryTypes::allMissedTypes
                                                            : TaskLogEntryTypes::allCompletedTypes);
}

/// What an entry says: what happened, and how much.
struct LogStep {
  TaskLogEntryType type = TaskLogEntryType::unknown;
  double amount = 0;  ///< In the task's unit.

  bool operator==(const LogStep&) const = default;
  /// What it adds to the period of the task.
  [[nodiscard]] constexpr double counted(bool isNegative) const {
    return countedTypes(isNegative).contains(type) ? amount : 0;
  }
};

/// The total of a period up to and including each of its entries.
[[nodiscard]] std::vector<double> runningTotals(std::span<const LogStep> entries, bool isNegative);

/// The instant of a new entry: a millisecond later for each entry of its day that has the same
/// instant, since the newest entry of a day has its total and is the one that is removed first.
/// \param taken The instants of the day's entries, the earliest first.
[[nodiscard]] Date instantOfItsOwn(Date at, std::span<const Date> taken);

/// The full type with the same outcome and origin as a partial one; any other type is its own.
[[nodiscard]] TaskLogEntryType fullForm(TaskLogEntryType type);

struct LogStepQuestion {
  /// Absent for the next tap: a step towards completion or, for a negative task, towards a miss.
  std::optional<TaskLogEntryType> type = {};
  /// Absent for what the type takes: a step takes what is left of the completion under way, a
  /// completion what is left of all, and what does not count takes nothing.
  std::optional<double> amount = {};
  bool isNegative = false;
  const TaskProgress& progress;  ///< Of the period, with what is done.
  double done = 0;               ///< What the entries of the period add up to.
  Date now;
};

/// The entry to be written. A step that reaches the target is the full entry, since only full
/// entries settle a period; one of a type that does not count for the task never is. A tap on what
/// is done begins another completion: nothing is left of the whole, and a whole step of the next.
///
///     const TaskProgress cups = TaskProgressDiscrete{.period = today, .expectedCompletions = 8};
///     nextLogStep({.progress = cups, .done = 0, .now = now}).amount;    // 1
///     nextLogStep({.type = TaskLogEntryType::completedManuallyFull, .progress = cups, .now = now})
///         .amount;    // 8: all that is left
[[nodiscard]] LogStep nextLogStep(const LogStepQuestion& question);

}  // namespace velloro
