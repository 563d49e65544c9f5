#include "OxDateTime/ThreadCalendar.h"

namespace velloro {

Calendar& currentThreadCalendar(TimeZone timeZone) {
  thread_local Calendar calendar(timeZone);
  calendar.setTimeZone(timeZone);
  return calendar;
}

}  // namespace velloro
