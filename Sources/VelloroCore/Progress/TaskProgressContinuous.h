#pragma once

#include "VelloroCore/Frequency/DatedPeriod.h"
#include "VelloroCore/Progress/TaskProgressType.h"

#include <cstdint>

namespace velloro {

/// The progress of a task that is measured in an amount, in any unit; see `TaskProgress`.
///
///     const TaskProgressContinuous water{
///         .period = today, .expectedCompletions = 4, .targetValue = 0.4, .currentValue = 0.3};
///     water.numCompletions();                        // 3
///     water.remainingValueForCurrentCompletion();    // 0.1
///
/// Amounts count as the decimal numbers that were added up: three tenths are three completions of a
/// tenth, though their binary quotient lies below 3.
struct TaskProgressContinuous {
  static constexpr TaskProgressType type = TaskProgressType::continuous;

  DatedPeriod period;
  ExpectedCompletions expectedCompletions = 1;
  double targetValue = 0;
  double currentValue = 0;

  bool operator==(const TaskProgressContinuous&) const = default;
  static constexpr auto codingKeys = keys(
      key("period", &TaskProgressContinuous::period),
      key("expectedCompletions", &TaskProgressContinuous::expectedCompletions, initialWhenUnknown),
      key("targetValue", &TaskProgressContinuous::targetValue, initialWhenUnknown),
      key("currentValue", &TaskProgressContinuous::currentValue, initialWhenUnknown));

  /// The whole completions in the current value, rounded down: more than expected when it is beyond
  /// the target, below 0 when it is negative.
  [[nodiscard]] std::int64_t numCompletions() const;
  [[nodiscard]] double valuePerCompletion() const {
    return targetValue / expectedCompletions.divisor();
  }
  /// 0 to 1; 0 without a target.
  [[nodiscard]] double progressPct() const;
  [[nodiscard]] double remainingValue() const;
  [[nodiscard]] double remainingValueForCurrentCompletion() const;

  [[nodiscard]] TaskProgressContinuous zeroProgress() const { return with(0); }
  [[nodiscard]] TaskProgressContinuous nextProgress() const {
    return with(currentValue + valuePerCompletion());
  }
  /// The same: what completes an amount is the amount itself.
  [[nodiscard]] TaskProgressContinuous completeProgress() const { return *this; }

 private:
  [[nodiscard]] double completions() const;
  [[nodiscard]] TaskProgressContinuous with(double value) const {
    TaskProgressContinuous changed = *this;
    changed.currentValue = value;
    return changed;
  }
};

}  // namespace velloro
