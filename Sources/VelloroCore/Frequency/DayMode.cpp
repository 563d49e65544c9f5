#include "VelloroCore/Frequency/DayMode.h"

#include <algorithm>
#include <iterator>

namespace velloro {

std::span<const DayMode> sortedModes() {
  using enum DayMode;
  static constexpr DayMode modes[] = {
      specificDaysOfWeek, numberOfDaysInWeek, numberOfDaysInFortnight, numberOfDaysInMonth,
      numberOfDaysInYear, dayInterval,        aggregateOverWeek,       aggregateOverFortnight,
      aggregateOverMonth, aggregateOverYear};
  return modes;
}

std::vector<DayMode> sortedModes(TaskFrequencyPeriodType type) {
  std::vector<DayMode> modes;
  std::ranges::copy_if(sortedModes(), std::back_inserter(modes),
                       [&](DayMode mode) { return measurementDuration(mode) == type; });
  return modes;
}

}  // namespace velloro
