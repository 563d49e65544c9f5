#pragma once

#include "Foundation/Time/Calendar.h"
#include "OxDateTime/DayOfWeek.h"
#include "OxDateTime/HHMMSS.h"
#include "OxDateTime/YYYYMMDD.h"

namespace velloro {

// An instant in terms of logical days.

[[nodiscard]] YYYYMMDD yyyymmdd(Date date, HHMMSS startOfDay, TimeZone timeZone);
[[nodiscard]] HHMMSS hhmmss(Date date, TimeZone timeZone);

/// Whether the instant lies in today's logical day.
[[nodiscard]] bool isToday(Date date, HHMMSS startOfDay, TimeZone timeZone, Date now);
[[nodiscard]] bool isSameDayAs(Date date, HHMMSS startOfDay, Date other, TimeZone timeZone);

/// The instant at which the logical day begins that holds the given one, and at which the next
/// does.
[[nodiscard]] Date startOfDay(Date date, HHMMSS startOfDay, TimeZone timeZone);
[[nodiscard]] Date startOfNextDay(Date date, HHMMSS startOfDay, TimeZone timeZone);

/// The weekday that a calendar's clock shows.
[[nodiscard]] DayOfWeek dayOfWeek(Date date, const Calendar& calendar);

}  // namespace velloro
