#include "OxDateTime/YYYYMMDD.h"

#include "Foundation/Coding/Coding.h"
#include "Foundation/Text/String.h"
#include "Foundation/Time/CivilDay.h"
#include "OxDateTime/Digits.h"
#include "OxDateTime/ThreadCalendar.h"

#include <algorithm>

namespace velloro {
namespace {

constexpr std::int64_t secondsPerDay = 86400;
constexpr YYYYMMDD fortnightAnchor{.y = 2000, .m = 1, .d = 1};
/// Beyond this many days, sums could leave 64 bits; no date that can be named is so far away.
constexpr std::int64_t largestCount = 1'000'000'000'000;

/// Whether counting days needs no calendar: true where the zone never skipped or repeated one.
bool daysAreNumbers(const CountedIn& timeZone) {
  return !timeZone || !timeZone->hasSkippedOrRepeatedDays();
}

Date noon(const YYYYMMDD& day, const Calendar& calendar) {
  return calendar.date(
      ClockTime{.dayNumber = day.dayNumber(), .secondOfDay = HHMMSS::midday.intValue()});
}

/// How many days a time of the clock lies behind the date whose name its logical day bears: 1 for
/// the next morning, -1 for the evening before.
std::int64_t daysBehindName(std::int64_t time, std::int64_t startOfDay) {
  if (startOfDay <= HHMMSS::midday.intValue()) return time < startOfDay ? 1 : 0;
  return time >= startOfDay ? -1 : 0;
}

YYYYMMDD readBack(Date date, const Calendar& calendar) {
  return YYYYMMDD::fromDayNumber(calendar.clockTime(date).dayNumber);
}

}  // namespace

std::optional<YYYYMMDD> YYYYMMDD::fromRawValue(std::int64_t value) {
  if (value < 1) return std::nullopt;
  return YYYYMMDD{.y = value / 10000, .m = value / 100 % 100, .d = value % 100};
}

std::optional<YYYYMMDD> YYYYMMDD::fromString(std::string_view text) {
  if (text.size() != 8) return std::nullopt;
  const auto year = wholeNumber(text.substr(0, 4));
  const auto month = wholeNumber(text.substr(4, 2));
  const auto day = wholeNumber(text.substr(6, 2));
  if (!year || !month || !day || *month < 1 || *month > 12 || *day < 1 ||
      *day > daysInMonth(*year, *month)) {
    return std::nullopt;
  }
  return YYYYMMDD{.y = *year, .m = *month, .d = *day};
}

YYYYMMDD YYYYMMDD::fromClockDay(std::int64_t clockDay, std::int64_t shift, TimeZone timeZone) {
  return fromDayNumber(clockDay).addUsingCalendar(Calendar(timeZone), shift);
}

std::string YYYYMMDD::debugDescription() const {
  return stringWithFormat("%04lld-%02lld-%02lld", static_cast<long long>(y),
                          static_cast<long long>(m), static_cast<long long>(d));
}

void YYYYMMDD::encode(Encoder& to) const {
  to.integer(intValue());
}

YYYYMMDD YYYYMMDD::decode(const Decoder& from) {
  const std::int64_t value = from.integer();
  if (const auto day = fromRawValue(value)) return *day;
  throw from.dataCorrupted("Unable to create YYYYMMDD from " + std::to_string(value));
}

DateComponents YYYYMMDD::dateComponents() const {
  return {.year = y, .month = m, .day = d};
}

YYYYMMDD YYYYMMDD::nextDay(const CountedIn& timeZone) const {
  if (!daysAreNumbers(timeZone)) return nextDayUsingCalendar(Calendar(*timeZone));
  if (m >= 1 && m <= 12 && d >= 1 && d < 28) return {.y = y, .m = m, .d = d + 1};
  return fromDayNumber(dayNumber() + 1);
}

YYYYMMDD YYYYMMDD::previousDay(const CountedIn& timeZone) const {
  if (!daysAreNumbers(timeZone)) {
    const Calendar calendar(*timeZone);
    return readBack(noon(*this, calendar) - secondsPerDay, calendar);
  }
  if (m >= 1 && m <= 12 && d > 1 && d <= 28) return {.y = y, .m = m, .d = d - 1};
  return fromDayNumber(dayNumber() - 1);
}

YYYYMMDD YYYYMMDD::nextDayUsingCalendar(const Calendar& calendar) const {
  const YYYYMMDD next = readBack(noon(*this, calendar) + secondsPerDay, calendar);
  // Where a day stood twice, the way leads to its second showing; a walk must not stop there.
  return fromDayNumber(std::max(next.dayNumber(), dayNumber() + 1));
}

YYYYMMDD YYYYMMDD::add(std::int64_t numDays, const CountedIn& timeZone) const {
  if (numDays == 0) return *this;
  if (!daysAreNumbers(timeZone)) return addUsingCalendar(Calendar(*timeZone), numDays);
  // Few days mostly end in the month that they began in.
  const auto behindFirst = static_cast<std::uint64_t>(d) + static_cast<std::uint64_t>(numDays) - 1;
  if (m >= 1 && m <= 12 && behindFirst < 28) return {.y = y, .m = m, .d = d + numDays};
  return fromDayNumber(dayNumber() + std::clamp(numDays, -largestCount, largestCount));
}

YYYYMMDD YYYYMMDD::addUsingCalendar(const Calendar& calendar, std::int64_t numDays) const {
  const Date from = noon(*this, calendar);
  const Date to = calendar.dateByAddingDays(numDays, from).value_or(from);
  const std::int64_t number = readBack(to, calendar).dayNumber();
  if (numDays > 0) return fromDayNumber(std::max(number, dayNumber() + 1));
  return fromDayNumber(numDays < 0 ? std::min(number, dayNumber() - 1) : number);
}

DayOfWeek YYYYMMDD::dayOfWeek(const CountedIn& timeZone) const {
  if (!daysAreNumbers(timeZone)) {
    const Calendar calendar(*timeZone);
    return static_cast<DayOfWeek>(calendar.weekday(noon(*this, calendar)) - 1);
  }
  return static_cast<DayOfWeek>(weekdayOfDays(dayNumber()));
}

std::int64_t YYYYMMDD::distance(YYYYMMDD to, bool includeThisDay, const CountedIn& timeZone) const {
  const std::int64_t from = dayNumber();
  const std::int64_t days = daysAreNumbers(timeZone)
                                ? to.dayNumber() - from
                                : Calendar(*timeZone).daysBetween(from, to.dayNumber());
  return days + (includeThisDay ? 1 : 0);
}

YYYYMMDD YYYYMMDD::startOfWeek(DayOfWeek firstDayOfWeek, const CountedIn& timeZone) const {
  const int weekday = static_cast<int>(dayOfWeek(timeZone));
  return add(-floorModulo(weekday - static_cast<int>(firstDayOfWeek), 7), timeZone);
}

YYYYMMDD YYYYMMDD::endOfWeek(DayOfWeek firstDayOfWeek, const CountedIn& timeZone) const {
  return startOfWeek(firstDayOfWeek, timeZone).add(6, timeZone);
}

YYYYMMDD YYYYMMDD::startOfFortnight(DayOfWeek firstDayOfWeek, std::optional<YYYYMMDD> referenceDate,
                                    const CountedIn& timeZone) const {
  const std::int64_t days =
      referenceDate.value_or(fortnightAnchor).distance(*this, false, timeZone);
  // The remainder has the sign of its dividend: no day before the anchor is in a second week.
  const bool isSecondWeek = days % 14 > 6;
  return (isSecondWeek ? add(-7, timeZone) : *this).startOfWeek(firstDayOfWeek, timeZone);
}

YYYYMMDD YYYYMMDD::endOfFortnight(DayOfWeek firstDayOfWeek, std::optional<YYYYMMDD> referenceDate,
                                  const CountedIn& timeZone) const {
  return startOfFortnight(firstDayOfWeek, referenceDate, timeZone).add(13, timeZone);
}

std::int64_t YYYYMMDD::numberOfDaysRemainingThisWeek(DayOfWeek firstDayOfWeek, bool includeThisDay,
                                                     const CountedIn& timeZone) const {
  return distance(endOfWeek(firstDayOfWeek, timeZone), includeThisDay, timeZone);
}

std::int64_t YYYYMMDD::numberOfDaysRemainingThisFortnight(DayOfWeek firstDayOfWeek,
                                                          bool includeThisDay,
                                                          std::optional<YYYYMMDD> referenceDate,
                                                          const CountedIn& timeZone) const {
  return distance(endOfFortnight(firstDayOfWeek, referenceDate, timeZone), includeThisDay,
                  timeZone);
}

std::int64_t YYYYMMDD::numberOfDaysRemainingThisMonth(bool includeThisDay,
                                                      const CountedIn& timeZone) const {
  return distance(yyyymm().lastDay(), includeThisDay, timeZone);
}

std::int64_t YYYYMMDD::numberOfDaysRemainingThisYear(bool includeThisDay,
                                                     const CountedIn& timeZone) const {
  return distance(yyyymm().lastMonthOfYear().lastDay(), includeThisDay, timeZone);
}

Date YYYYMMDD::dateAt(HHMMSS startOfDay, HHMMSS time, TimeZone timeZone) const {
  const Calendar calendar(timeZone);
  const Date date =
      calendar.date(ClockTime{.dayNumber = dayNumber(), .secondOfDay = time.intValue()});
  return calendar.dateByAddingDays(daysBehindName(time.intValue(), startOfDay.intValue()), date)
      .value_or(date);
}

Calendar& YYYYMMDD::calendar(TimeZone timeZone) {
  return currentThreadCalendar(timeZone);
}

}  // namespace velloro
