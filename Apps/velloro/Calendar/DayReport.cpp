#include "velloro/Calendar/DayReport.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Text/Locale.h"
#include "Foundation/Text/String.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Output/Output.h"

namespace velloro {
namespace {

std::string rangeText(const char* name, const std::vector<YYYYMMDD>& days, std::int64_t remaining) {
  return stringWithFormat(
      "%-10s %s  to  %s   %4lld to go\n", name, days.front().debugDescription().c_str(),
      days.back().debugDescription().c_str(), static_cast<long long>(remaining));
}

}  // namespace

DayReport DayReport::of(YYYYMMDD day, HHMMSS startOfDay, DayOfWeek firstDayOfWeek,
                        TimeZone timeZone) {
  const YYYYMM month = day.yyyymm();
  return {
      .day = day,
      .dayOfWeek = day.dayOfWeek(timeZone),
      .weekday = weekdayName(day.dayOfWeek(timeZone)),
      .start = {day.startOfDay(startOfDay, timeZone)},
      .end = {day.nextDay(timeZone).startOfDay(startOfDay, timeZone)},
      .week = {day.startOfWeek(firstDayOfWeek, timeZone), day.endOfWeek(firstDayOfWeek, timeZone)},
      .fortnight = {day.startOfFortnight(firstDayOfWeek, {}, timeZone),
                    day.endOfFortnight(firstDayOfWeek, {}, timeZone)},
      .month = {month.firstDay(), month.lastDay()},
      .year = {month.firstMonthOfYear().firstDay(), month.lastMonthOfYear().lastDay()},
      .daysRemaining = {
          .week = day.numberOfDaysRemainingThisWeek(firstDayOfWeek, false, timeZone),
          .fortnight = day.numberOfDaysRemainingThisFortnight(firstDayOfWeek, false, {}, timeZone),
          .month = day.numberOfDaysRemainingThisMonth(false, timeZone),
          .year = day.numberOfDaysRemainingThisYear(false, timeZone)}};
}

std::string DayReport::json() const {
  return JSONEncoder{}.encode(*this) + "\n";
}

std::string DayReport::text() const {
  const double hours = end.date.timeIntervalSince(start.date) / 3600;
  return localizedTitle(dayOfWeek, Locale::current()) + ", " + day.debugDescription() + "\n\n" +
         "begins     " + instantText(start.date) + "\n" + "ends       " + instantText(end.date) +
         stringWithFormat("   %g hours\n", hours) + rangeText("week", week, daysRemaining.week) +
         rangeText("fortnight", fortnight, daysRemaining.fortnight) +
         rangeText("month", month, daysRemaining.month) +
         rangeText("year", year, daysRemaining.year);
}

}  // namespace velloro
