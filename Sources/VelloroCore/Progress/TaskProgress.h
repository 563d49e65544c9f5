#pragma once

#include "VelloroCore/Progress/TaskProgressActivityRings.h"
#include "VelloroCore/Progress/TaskProgressContinuous.h"
#include "VelloroCore/Progress/TaskProgressDateRange.h"
#include "VelloroCore/Progress/TaskProgressDiscrete.h"
#include "VelloroCore/Progress/TaskProgressSimple.h"
#include "VelloroCore/Progress/TaskProgressTimer.h"
#include "VelloroCore/Progress/TaskProgressType.h"

#include <concepts>
#include <cstdint>
#include <string>
#include <variant>

namespace velloro {

/// A record of a task's progress in a period: one of six types.
template <typename T>
concept TaskProgressRecord = std::same_as<decltype(T::type), const TaskProgressType>;

/// A task's progress in a period: any of the six records behind one interface.
///
///     const TaskProgress progress =
///         TaskProgressDiscrete{.period = today, .expectedCompletions = 2, .numCompletions = 1};
///     progress.progressPct(now);                        // 0.5
///     progress.nextProgress().progressPct(now);         // 1
///     progress.as<TaskProgressTimer>();                 // absent: a pointer to the record itself
///
/// Only a `TaskProgressDateRange` looks at `now`.
///
/// A record has members for what is its own. Where it has none, it is one whole: one completion is
/// expected and done when `progressPct` reaches 1, target and value per completion are 1, the
/// current value is the `progressPct`, and the completion under way shows no progress of its own
/// and has the whole's remaining value.
struct TaskProgress {
  std::variant<TaskProgressDiscrete, TaskProgressContinuous, TaskProgressTimer,
               TaskProgressActivityRings, TaskProgressSimple, TaskProgressDateRange>
      record;

  TaskProgress() = default;
  template <TaskProgressRecord Record>
  TaskProgress(const Record& progress) : record(progress) {}

  /// The record as one of the six types; null when it is another.
  template <TaskProgressRecord Record>
  [[nodiscard]] const Record* as() const {
    return std::get_if<Record>(&record);
  }

  bool operator==(const TaskProgress&) const = default;
  /// The record's type and all its members.
  void hash(Hasher& hasher) const;
  /// "TaskProgress[discrete, 1 of 2 completions, 1 of 2]", with the current value and the target.
  [[nodiscard]] std::string debugDescription(Date now) const;

  [[nodiscard]] TaskProgressType type() const;
  [[nodiscard]] const DatedPeriod& period() const;
  void setPeriod(const DatedPeriod& period);

  [[nodiscard]] std::int64_t expectedCompletions() const;
  [[nodiscard]] std::int64_t numCompletions(Date now) const;

  // Amounts, in the unit of the record.
  [[nodiscard]] double targetValue() const;
  [[nodiscard]] double currentValue(Date now) const;
  [[nodiscard]] double valuePerCompletion() const;
  [[nodiscard]] double remainingValue(Date now) const;
  [[nodiscard]] double remainingValueForCurrentCompletion(Date now) const;

  // Shares: 1 is complete.
  [[nodiscard]] double progressPct(Date now) const;
  /// Of the completion under way.
  [[nodiscard]] double currentCompletionProgressPct() const;

  // The same period's progress before the first step, after one more, and at the end.
  [[nodiscard]] TaskProgress zeroProgress() const;
  [[nodiscard]] TaskProgress nextProgress() const;
  [[nodiscard]] TaskProgress completeProgress() const;
};

}  // namespace velloro
