#pragma once

#include "Foundation/Coding/RawValue.h"
#include "VelloroCore/Frequency/DatedPeriod.h"
#include "VelloroCore/Progress/TaskProgressType.h"
#include "VelloroCore/Types/TypeUnit.h"

#include <cstdint>
#include <string_view>
#include <type_traits>

namespace velloro {

/// The progress of a task that is timed; see `TaskProgress`. Durations are in seconds, the values
/// of the common interface (`targetValue`, `currentValue`, …) in the record's unit.
///
///     const TaskProgressTimer timer{.period = today,
///                                   .unit = TaskProgressTimer::Unit::minutes,
///                                   .expectedCompletions = 2,
///                                   .numCompletions = 1,
///                                   .totalTargetDuration = 600,
///                                   .currentCompletionDuration = 100};
///     timer.durationPerCompletion();                                      // 300
///     timer.remainingDuration();                                          // 200
///     timer.targetValue();                                                // 10
///     timer.addCurrentCompletionDuration(250, true).numCompletions;       // 2
struct TaskProgressTimer {
  static constexpr TaskProgressType type = TaskProgressType::timer;
  enum class Unit : std::int8_t { hours, minutes, seconds };

  DatedPeriod period;
  Unit unit = Unit::hours;
  ExpectedCompletions expectedCompletions = 1;
  std::int64_t numCompletions = 0;
  double totalTargetDuration = 0;        ///< Of all completions.
  double currentCompletionDuration = 0;  ///< What has been timed of the one under way.

  bool operator==(const TaskProgressTimer&) const = default;
  static constexpr auto codingKeys =
      keys(key("period", &TaskProgressTimer::period),
           key("unit", &TaskProgressTimer::unit, whenUnknown(Unit::seconds)),
           key("expectedCompletions", &TaskProgressTimer::expectedCompletions,
               whenUnknown(&expectedCompletionsStandIn)),
           key("numCompletions", &TaskProgressTimer::numCompletions, initialWhenUnknown),
           key("totalTargetDuration", &TaskProgressTimer::totalTargetDuration, initialWhenUnknown),
           key("currentCompletionDuration", &TaskProgressTimer::currentCompletionDuration,
               initialWhenUnknown));

  // An amount in the unit to and from seconds. What comes out whole on paper is whole.
  [[nodiscard]] static double convertToTimeInterval(double value, Unit unit);
  [[nodiscard]] static double convertFromTimeInterval(double duration, Unit unit);

  [[nodiscard]] double durationPerCompletion() const {
    return totalTargetDuration / expectedCompletions.divisor();
  }
  /// Of all completions; at least 0.
  [[nodiscard]] double remainingDuration() const;
  /// Below 0 when more was timed than the completion takes.
  [[nodiscard]] double remainingDurationCurrentCompletion() const;

  /// The progress after a further stretch of time. When that finishes the completion under way, the
  /// next one starts with what is over, or at 0; behind the last one nothing is kept.
  [[nodiscard]] TaskProgressTimer addCurrentCompletionDuration(
      double duration, bool assignOverflowToNextCompletion) const;

  [[nodiscard]] double targetValue() const { return inUnit(totalTargetDuration); }
  [[nodiscard]] double currentValue() const { return inUnit(elapsedDuration()); }
  [[nodiscard]] double valuePerCompletion() const { return inUnit(durationPerCompletion()); }
  [[nodiscard]] double progressPct() const;
  [[nodiscard]] double currentCompletionProgressPct() const;
  [[nodiscard]] double remainingValue() const { return inUnit(remainingDuration()); }
  [[nodiscard]] double remainingValueForCurrentCompletion() const;

  [[nodiscard]] TaskProgressTimer zeroProgress() const { return with(0); }
  [[nodiscard]] TaskProgressTimer nextProgress() const {
    return with(expectedCompletions.after(numCompletions));
  }
  [[nodiscard]] TaskProgressTimer completeProgress() const { return with(expectedCompletions); }

 private:
  [[nodiscard]] double inUnit(double duration) const {
    return convertFromTimeInterval(duration, unit);
  }
  [[nodiscard]] double elapsedDuration() const;
  [[nodiscard]] TaskProgressTimer with(std::int64_t completions, double duration = 0) const;
};

namespace task_progress_timer_detail {
struct UnitRow {
  TaskProgressTimer::Unit value;
  std::string_view raw;
  TypeUnit automaticTaskTypeUnit;
};

inline constexpr UnitRow unitRows[] = {
    {TaskProgressTimer::Unit::hours, "h", TypeUnit::durationHours},
    {TaskProgressTimer::Unit::minutes, "m", TypeUnit::durationMinutes},
    {TaskProgressTimer::Unit::seconds, "s", TypeUnit::durationSeconds}};
}  // namespace task_progress_timer_detail

constexpr auto rawValues(std::type_identity<TaskProgressTimer::Unit>) {
  return rawColumn(task_progress_timer_detail::unitRows);
}

/// The same unit among those of automatic tasks.
[[nodiscard]] constexpr TypeUnit automaticTaskTypeUnit(TaskProgressTimer::Unit unit) {
  return rowOf(task_progress_timer_detail::unitRows, unit).automaticTaskTypeUnit;
}

}  // namespace velloro
