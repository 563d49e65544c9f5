#pragma once

#include "VelloroCore/Frequency/DatedPeriod.h"
#include "VelloroCore/Progress/TaskProgressType.h"

#include <algorithm>
#include <cstdint>

namespace velloro {

/// The progress of a task that is done in steps; see `TaskProgress`.
///
///     const TaskProgressDiscrete progress{
///         .period = today, .expectedCompletions = 3, .numCompletions = 1};
///     progress.progressPct();                    // 0.3333…
///     progress.nextProgress().numCompletions;    // 2
struct TaskProgressDiscrete {
  static constexpr TaskProgressType type = TaskProgressType::discrete;

  DatedPeriod period;
  ExpectedCompletions expectedCompletions = 1;
  std::int64_t numCompletions = 0;

  bool operator==(const TaskProgressDiscrete&) const = default;
  static constexpr auto codingKeys =
      keys(key("period", &TaskProgressDiscrete::period),
           key("expectedCompletions", &TaskProgressDiscrete::expectedCompletions,
               whenUnknown(&expectedCompletionsStandIn)),
           key("numCompletions", &TaskProgressDiscrete::numCompletions, initialWhenUnknown));

  [[nodiscard]] double targetValue() const {
    return static_cast<double>(expectedCompletions.count);
  }
  [[nodiscard]] double currentValue() const { return static_cast<double>(numCompletions); }
  [[nodiscard]] double progressPct() const {
    return expectedCompletions < 1 ? 0 : currentValue() / targetValue();
  }
  [[nodiscard]] double remainingValue() const {
    return std::max(targetValue() - currentValue(), 0.0);
  }
  [[nodiscard]] double remainingValueForCurrentCompletion() const { return 1; }

  [[nodiscard]] TaskProgressDiscrete zeroProgress() const { return with(0); }
  [[nodiscard]] TaskProgressDiscrete nextProgress() const {
    return with(expectedCompletions.after(numCompletions));
  }
  [[nodiscard]] TaskProgressDiscrete completeProgress() const { return with(expectedCompletions); }

 private:
  [[nodiscard]] TaskProgressDiscrete with(std::int64_t completions) const {
    TaskProgressDiscrete changed = *this;
    changed.numCompletions = completions;
    return changed;
  }
};

}  // namespace velloro
