#include "OxDateTime/YYYYMMDD.h"

#include "Foundation/Coding/Coding.h"
#include "Foundation/Process/Environment.h"
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

/// Whether counting days needs no calendar: true where the device's zone never skipped or repeated
/// one.
bool daysAreNumbers() {
  return !Environment::current().timeZone().hasSkippedOrRepeatedDays();
}

Calendar deviceCalendar() {
  return Calendar(Environment::current().timeZone());
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

YYYYMMDD YYYYMMDD::nextDay() const {
  if (!daysAreNumbers()) return nextDayUsingCalendar();
  if (m >= 1 && m <= 12 && d >= 1 && d < 28) return {.y = y, .m = m, .d = d + 1};
  return fromDayNumber(dayNumber() + 1);
}

YYYYMMDD YYYYMMDD::previousDay() const {
  if (!daysAreNumbers()) {
    const Calendar here = deviceCalendar();
    return readBack(noon(*this, here) - secondsPerDay, here);
  }
  if (m >= 1 && m <= 12 && d > 1 && d <= 28) return {.y = y, .m = m, .d = d - 1};
  return fromDayNumber(dayNumber() - 1);
}

YYYYMMDD YYYYMMDD::nextDayUsingCalendar() const {
  const Calendar here = deviceCalendar();
  const YYYYMMDD next = readBack(noon(*this, here) + secondsPerDay, here);
  // Where a day stood twice, the way leads to its second showing; a walk must not stop there.
  return fromDayNumber(std::max(next.dayNumber(), dayNumber() + 1));
}

YYYYMMDD YYYYMMDD::add(std::int64_t numDays) const {
  if (numDays == 0) return *this;
  if (!daysAreNumbers()) return addUsingCalendar(deviceCalendar(), numDays);
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

DayOfWeek YYYYMMDD::dayOfWeek() const {
  if (!daysAreNumbers()) {
    const Calendar here = deviceCalendar();
    return static_cast<DayOfWeek>(here.weekday(noon(*this, here)) - 1);
  }
  return static_cast<DayOfWeek>(weekdayOfDays(dayNumber()));
}

std::int64_t YYYYMMDD::distance(YYYYMMDD to, bool includeThisDay) const {
  const std::int64_t from = dayNumber();
  const std::int64_t days =
      daysAreNumbers() ? to.dayNumber() - from : deviceCalendar().daysBetween(from, to.dayNumber());
  return days + (includeThisDay ? 1 : 0);
}

YYYYMMDD YYYYMMDD::startOfWeek(DayOfWeek firstDayOfWeek) const {
  return add(-floorModulo(static_cast<int>(dayOfWeek()) - static_cast<int>(firstDayOfWeek), 7));
}

YYYYMMDD YYYYMMDD::endOfWeek(DayOfWeek firstDayOfWeek) const {
  return startOfWeek(firstDayOfWeek).add(6);
}

YYYYMMDD YYYYMMDD::startOfFortnight(DayOfWeek firstDayOfWeek,
                                    std::optional<YYYYMMDD> referenceDate) const {
  const std::int64_t days = referenceDate.value_or(fortnightAnchor).distance(*this);
  // The remainder has the sign of its dividend: no day before the anchor is in a second week.
  const bool isSecondWeek = days % 14 > 6;
  return (isSecondWeek ? add(-7) : *this).startOfWeek(firstDayOfWeek);
}

YYYYMMDD YYYYMMDD::endOfFortnight(DayOfWeek firstDayOfWeek,
                                  std::optional<YYYYMMDD> referenceDate) const {
  return startOfFortnight(firstDayOfWeek, referenceDate).add(13);
}

std::int64_t YYYYMMDD::numberOfDaysRemainingThisWeek(DayOfWeek firstDayOfWeek,
                                                     bool includeThisDay) const {
  return distance(endOfWeek(firstDayOfWeek), includeThisDay);
}

std::int64_t YYYYMMDD::numberOfDaysRemainingThisFortnight(
    DayOfWeek firstDayOfWeek, bool includeThisDay, std::optional<YYYYMMDD> referenceDate) const {
  return distance(endOfFortnight(firstDayOfWeek, referenceDate), includeThisDay);
}

std::int64_t YYYYMMDD::numberOfDaysRemainingThisMonth(bool includeThisDay) const {
  return distance(yyyymm().lastDay(), includeThisDay);
}

std::int64_t YYYYMMDD::numberOfDaysRemainingThisYear(bool includeThisDay) const {
  return distance(yyyymm().lastMonthOfYear().lastDay(), includeThisDay);
}

Date YYYYMMDD::dateAt(HHMMSS startOfDay, HHMMSS time, std::optional<TimeZone> timeZone) const {
  const Calendar calendar(timeZone ? *timeZone : Environment::current().timeZone());
  const Date date =
      calendar.date(ClockTime{.dayNumber = dayNumber(), .secondOfDay = time.intValue()});
  return calendar.dateByAddingDays(daysBehindName(time.intValue(), startOfDay.intValue()), date)
      .value_or(date);
}

Calendar& YYYYMMDD::calendar(std::optional<TimeZone> timeZone) {
  return currentThreadCalendar(timeZone);
}

}  // namespace velloro
