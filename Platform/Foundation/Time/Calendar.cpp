#include "Foundation/Time/Calendar.h"

#include <algorithm>

namespace platform {
namespace {

constexpr std::int64_t secondsPerDay = 86400;
constexpr std::int64_t noon = secondsPerDay / 2;
/// Bounds that keep every sum below in 64 bits and every instant an exact whole second in a double.
constexpr std::int64_t largestDay = 11'574'074'074;  // where `Date::secondsSince1970` ends
constexpr std::int64_t largestPart = 400'000'000'000;
constexpr std::int64_t largestYear = 1'000'000;

Date dateAt(std::int64_t utcSeconds) {
  return Date::since1970(static_cast<double>(utcSeconds));
}

bool isBeyond(std::int64_t value, std::int64_t limit) {
  return value > limit || value < -limit;
}

/// Whole days by which a change of sides of the date line moved the civil day, in seconds.
std::int64_t wholeDays(std::int64_t offsetChange) {
  return floorDivide(offsetChange + noon, secondsPerDay) * secondsPerDay;
}

}  // namespace

ClockTime Calendar::clockTime(Date date) const {
  const std::int64_t local = timeZone_.localSecondsAt(date);
  const std::int64_t dayNumber = dayOfSeconds(local);
  return {.dayNumber = dayNumber, .secondOfDay = local - dayNumber * secondsPerDay};
}

DateComponents Calendar::dateComponents(Date date) const {
  const auto [dayNumber, secondOfDay] = clockTime(date);
  const CivilDay day = civilFromDays(dayNumber);
  return {.year = day.y,
          .month = day.m,
          .day = day.d,
          .hour = secondOfDay / 3600,
          .minute = secondOfDay / 60 % 60,
          .second = secondOfDay % 60};
}

std::optional<Date> Calendar::date(const DateComponents& components) const {
  const CivilDay day{.y = components.year.value_or(0),
                     .m = components.month.value_or(1),
                     .d = components.day.value_or(1)};
  const std::int64_t hour = components.hour.value_or(0);
  const std::int64_t minute = components.minute.value_or(0);
  const std::int64_t second = components.second.value_or(0);
  if (isBeyond(day.y, largestYear) || isBeyond(day.m, largestYear) ||
      isBeyond(day.d, largestPart / secondsPerDay) || isBeyond(hour, largestPart / 3600) ||
      isBeyond(minute, largestPart / 60) || isBeyond(second, largestPart)) {
    return std::nullopt;
  }
  return date(ClockTime{.dayNumber = daysFromCivil(day),
                        .secondOfDay = hour * 3600 + minute * 60 + second});
}

Date Calendar::date(ClockTime clockTime) const {
  constexpr std::int64_t largest = largestDay * secondsPerDay;
  const std::int64_t dayNumber = std::clamp(clockTime.dayNumber, -largestDay, largestDay);
  const std::int64_t second = std::clamp(clockTime.secondOfDay, -largest, largest);
  const std::int64_t local = std::clamp(dayNumber * secondsPerDay + second, -largest, largest);
  return dateAt(timeZone_.utcSecondsAt(local));
}

std::optional<Date> Calendar::dateByAddingDays(std::int64_t days, Date to) const {
  if (isBeyond(days, largestPart / secondsPerDay)) return std::nullopt;
  if (days == 0) return to;
  const std::int64_t seconds = to.secondsSince1970();
  std::int64_t local = timeZone_.localSecondsAt(to) + days * secondsPerDay;
  if (timeZone_.hasSkippedOrRepeatedDays()) {
    local +=
        wholeDays(timeZone_.offsetAt(seconds + days * secondsPerDay) - timeZone_.offsetAt(seconds));
  }
  const double fraction = to.timeIntervalSince(dateAt(seconds));
  return dateAt(timeZone_.utcSecondsAt(local)) + fraction;
}

std::int64_t Calendar::daysBetween(std::int64_t from, std::int64_t to) const {
  if (!timeZone_.hasSkippedOrRepeatedDays()) return to - from;
  const auto noonOf = [this](std::int64_t dayNumber) {
    return date(ClockTime{.dayNumber = dayNumber, .secondOfDay = noon});
  };
  return floorDivide(noonOf(to).secondsSince1970() - noonOf(from).secondsSince1970() + noon,
                     secondsPerDay);
}

std::int64_t Calendar::weekday(Date date) const {
  return weekdayOfDays(clockTime(date).dayNumber) + 1;
}

std::int64_t Calendar::numberOfDaysInMonth(Date date) const {
  const CivilDay day = civilFromDays(clockTime(date).dayNumber);
  return daysInMonth(day.y, day.m);
}

std::int64_t Calendar::numberOfDaysInYear(Date date) const {
  return isLeapYear(civilFromDays(clockTime(date).dayNumber).y) ? 366 : 365;
}

}  // namespace platform
