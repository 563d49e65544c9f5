#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <ranges>
#include <string>
#include <utility>
#include <vector>

#include <unicode/gregocal.h>

namespace velloro {

/// Days by ICU's calendar, proleptic Gregorian, and a zone's clock by the C library, which reads
/// the system's zone files (ICU's own zones may be of another year). Neither shares code with ours.
/// The zone is the process's for as long as the oracle lives.
class CalendarOracle {
 public:
  explicit CalendarOracle(const std::string& zone)
      : calendar_(*icu::TimeZone::getGMT(), icu::Locale::getUS(), status_) {
    calendar_.setGregorianChange(-1e18, status_);
    ::setenv("TZ", zone.c_str(), 1);
    ::tzset();
  }
  ~CalendarOracle() {
    ::unsetenv("TZ");
    ::tzset();
  }
  CalendarOracle(const CalendarOracle&) = delete;
  CalendarOracle& operator=(const CalendarOracle&) = delete;

  /// The day that lies `days` after a day.
  std::int64_t add(std::int64_t day, int days) {
    at(day).add(UCAL_DATE, days, status_);
    return calendar_.get(UCAL_EXTENDED_YEAR, status_) * 10000LL +
           (calendar_.get(UCAL_MONTH, status_) + 1) * 100 + calendar_.get(UCAL_DATE, status_);
  }
  /// 0 is Sunday.
  int weekday(std::int64_t day) { return at(day).get(UCAL_DAY_OF_WEEK, status_) - 1; }
  int distance(std::int64_t from, std::int64_t to) {
    const UDate end = at(to).getTime(status_);
    return at(from).fieldDifference(end, UCAL_DATE, status_);
  }
  int numberOfDaysInMonth(std::int64_t day) { return at(day).getActualMaximum(UCAL_DATE, status_); }

  struct Reading {
    std::int64_t day;
    std::int64_t secondOfDay;
    std::int64_t offset;  ///< Seconds east of Greenwich.
  };
  /// What the clock shows at a UTC second.
  static Reading read(std::int64_t utcSeconds) {
    std::tm clock{};
    ::localtime_r(&utcSeconds, &clock);
    return {.day = (clock.tm_year + 1900LL) * 10000 + (clock.tm_mon + 1) * 100 + clock.tm_mday,
            .secondOfDay = clock.tm_hour * 3600 + clock.tm_min * 60 + clock.tm_sec,
            .offset = clock.tm_gmtoff};
  }

  /// The UTC second of a time of the clock on a day, moved on by calendar days. Skipped times move
  /// forward by the gap, of repeated ones the first counts.
  std::int64_t instant(std::int64_t day, std::int64_t secondOfDay, int daysOn) {
    const std::int64_t first = instantShowing(day, secondOfDay);
    if (daysOn == 0) return first;
    // The moved time of the clock, set anew on the other day, so that a repeated one is the first.
    const Reading reading = read(first);
    return instantShowing(add(reading.day, daysOn), reading.secondOfDay);
  }

  /// The UTC seconds at which the zone's clocks change between two instants, but for changes that
  /// are taken back within a week.
  static std::vector<std::int64_t> changes(std::int64_t from, std::int64_t to) {
    constexpr std::int64_t step = 86400 * 7;
    std::vector<std::int64_t> found;
    std::int64_t offset = read(from).offset;
    for (std::int64_t start = from; start < to; start += step) {
      const std::int64_t nextOffset = read(start + step).offset;
      if (std::exchange(offset, nextOffset) == nextOffset) continue;
      const auto seconds = std::views::iota(start, start + step);
      found.push_back(*std::ranges::partition_point(
          seconds, [&](std::int64_t second) { return read(second).offset != nextOffset; }));
    }
    return found;
  }

 private:
  icu::GregorianCalendar& at(std::int64_t day, std::int64_t secondOfDay = 0) {
    calendar_.clear();
    calendar_.set(static_cast<int>(day / 10000), static_cast<int>(day / 100 % 100) - 1,
                  static_cast<int>(day % 100), 0, 0, static_cast<int>(secondOfDay));
    return calendar_;
  }

  std::int64_t instantShowing(std::int64_t day, std::int64_t secondOfDay) {
    const auto shown = static_cast<std::int64_t>(at(day, secondOfDay).getTime(status_) / 1000);
    const auto isShownAt = [&](std::int64_t utc) { return utc + read(utc).offset == shown; };
    // Clocks change once in these two days at most. Both offsets show a repeated time, the one
    // before the change first; neither shows a skipped one.
    const std::int64_t before = shown - read(shown - 86400).offset;
    const std::int64_t after = shown - read(shown + 86400).offset;
    return !isShownAt(before) && isShownAt(after) ? after : before;
  }

  UErrorCode status_ = U_ZERO_ERROR;
  icu::GregorianCalendar calendar_;
};

}  // namespace velloro
