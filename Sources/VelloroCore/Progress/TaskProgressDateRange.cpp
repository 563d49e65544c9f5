#include "VelloroCore/Progress/TaskProgressDateRange.h"

namespace velloro {

TaskProgressDateRange TaskProgressDateRange::from(const Range& range) {
  return {.startOfDay = range.startOfDay,
          .timeZone = range.timeZone,
          .scale = range.enabled ? 1.0 : 0.0,
          .currentDate = range.currentDate,
          .period = range.period};
}

Date TaskProgressDateRange::start() const {
  return period.period.startDate.startOfDay(startOfDay, timeZone);
}

Date TaskProgressDateRange::end() const {
  return period.period.finishDate.nextDay(timeZone).startOfDay(startOfDay, timeZone);
}

double TaskProgressDateRange::progressPctAt(Date at) const {
  const Date first = start();
  const Date last = end();
  if (at < first) return 0;
  if (at >= last) return scale;
  return at.timeIntervalSince(first) / last.timeIntervalSince(first) * scale;
}

}  // namespace velloro
