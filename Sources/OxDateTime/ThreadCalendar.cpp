#include "OxDateTime/ThreadCalendar.h"

namespace velloro {

Calendar& currentThreadCalendar(std::optional<TimeZone> timeZone) {
  const TimeZone zone = timeZone ? *timeZone : TimeZone::current();
  thread_local Calendar calendar(zone);
  calendar.setTimeZone(zone);
  return calendar;
}

}  // namespace velloro
