#pragma once

#include "VelloroCore/Frequency/DatedPeriod.h"
#include "VelloroCore/Progress/TaskProgressType.h"

#include <algorithm>

namespace velloro {

/// A progress that is known as a share only; see `TaskProgress`.
struct TaskProgressSimple {
  static constexpr TaskProgressType type = TaskProgressType::simple;

  DatedPeriod period;
  double progressPct = 0;                   ///< 1 is complete.
  double currentCompletionProgressPct = 0;  ///< The same, of the completion under way.

  bool operator==(const TaskProgressSimple&) const = default;
  static constexpr auto codingKeys =
      keys(key("period", &TaskProgressSimple::period),
           key("progressPct", &TaskProgressSimple::progressPct, initialWhenUnknown),
           key("currentCompletionProgressPct", &TaskProgressSimple::currentCompletionProgressPct,
               initialWhenUnknown));

  [[nodiscard]] double remainingValue() const { return std::max(1 - progressPct, 0.0); }

  [[nodiscard]] TaskProgressSimple zeroProgress() const { return {.period = period}; }
  [[nodiscard]] TaskProgressSimple nextProgress() const { return completeProgress(); }
  [[nodiscard]] TaskProgressSimple completeProgress() const {
    return {.period = period, .progressPct = 1};
  }
};

}  // namespace velloro
