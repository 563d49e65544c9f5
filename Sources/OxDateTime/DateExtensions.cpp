#include "OxDateTime/DateExtensions.h"

namespace velloro {

YYYYMMDD yyyymmdd(Date date, HHMMSS startOfDay, TimeZone timeZone) {
  return YYYYMMDD::fromDate(startOfDay, date, timeZone);
}

HHMMSS hhmmss(Date date, TimeZone timeZone) {
  return HHMMSS::fromDate(date, timeZone);
}

bool isToday(Date date, HHMMSS startOfDay, TimeZone timeZone, Date now) {
  return isSameDayAs(date, startOfDay, now, timeZone);
}

bool isSameDayAs(Date date, HHMMSS startOfDay, Date other, TimeZone timeZone) {
  return yyyymmdd(date, startOfDay, timeZone) == yyyymmdd(other, startOfDay, timeZone);
}

Date startOfDay(Date date, HHMMSS startOfDay, TimeZone timeZone) {
  return yyyymmdd(date, startOfDay, timeZone).startOfDay(startOfDay, timeZone);
}

Date startOfNextDay(Date date, HHMMSS startOfDay, TimeZone timeZone) {
  return yyyymmdd(date, startOfDay, timeZone).nextDay(timeZone).startOfDay(startOfDay, timeZone);
}

DayOfWeek dayOfWeek(Date date, const Calendar& calendar) {
  return dayOfWeek(static_cast<CalendarDayOfWeek>(calendar.weekday(date)));
}

}  // namespace velloro
