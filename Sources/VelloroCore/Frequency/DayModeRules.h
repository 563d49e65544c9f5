#pragma once

#include "VelloroCore/Frequency/DayMode.h"

namespace velloro {

// Which of a task's values a mode uses.

/// Whether a task may say itself when its weeks begin: not where its log is kept by days or by
/// months, which begin when they begin.
[[nodiscard]] constexpr bool usesFirstDayOfWeek(DayMode mode) {
  const auto duration = measurementDuration(mode);
  return duration != TaskFrequencyPeriodType::day && duration != TaskFrequencyPeriodType::month;
}

/// Whether the mode requires a number of days of a longer period (`TaskFrequency::numCompletions`).
[[nodiscard]] constexpr bool countsDays(DayMode mode) {
  switch (mode) {
    case DayMode::numberOfDaysInWeek:
    case DayMode::numberOfDaysInFortnight:
    case DayMode::numberOfDaysInMonth:
    case DayMode::numberOfDaysInYear:
      return true;
    default:
      return false;
  }
}

}  // namespace velloro
