#include "VelloroCore/Frequency/DatedPeriod.h"

#include <algorithm>

namespace velloro {

double DatedPeriod::periodProgressAtEndOfToday(const CountedIn& timeZone) const {
  const std::int64_t total = period.numberOfDays(timeZone);
  if (total < 1) return 1;
  const std::int64_t gone = total - period.remainingDays(date, false, timeZone);
  return static_cast<double>(std::max<std::int64_t>(gone, 0)) / static_cast<double>(total);
}

}  // namespace velloro
