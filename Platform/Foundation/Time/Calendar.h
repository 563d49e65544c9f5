#pragma once

#include "Foundation/Time/CivilDay.h"
#include "Foundation/Time/Date.h"
#include "Foundation/Time/TimeZone.h"

#include <cstdint>
#include <optional>

namespace platform {

/// Components of a date or a time of day; components that are not given are absent.
struct DateComponents {
  std::optional<std::int64_t> year = {};
  std::optional<std::int64_t> month = {};   ///< 1 is January
  std::optional<std::int64_t> day = {};     ///< 1 is the first
  std::optional<std::int64_t> hour = {};    ///< 0 to 23
  std::optional<std::int64_t> minute = {};  ///< 0 to 59
  std::optional<std::int64_t> second = {};  ///< 0 to 59

  bool operator==(const DateComponents&) const = default;
};

/// The reading of a clock: the number of a day and the whole seconds since its midnight on the
/// dial, which on the day of a clock change are not the seconds that have passed since then.
struct ClockTime {
  std::int64_t dayNumber = 0;    ///< Days since 1970-01-01, as `daysFromCivil` gives them.
  std::int64_t secondOfDay = 0;  ///< 0 to 86399

  bool operator==(const ClockTime&) const = default;
};

/// The Gregorian calendar in a time zone, proleptic: its rules hold for every year, also before
/// 1582.
///
/// A local time that a clock change skips moves forward by the length of the gap, and one that a
/// change repeats means its first occurrence.
///
///     const Calendar berlin(TimeZone::fromIdentifier("Europe/Berlin").value());
///     const Date gap = berlin.date({.year = 2024, .month = 3, .day = 31, .hour = 2}).value();
///     gap.iso8601();     // "2024-03-31T01:00:00Z": 3:00 in Berlin
///     const Date before = berlin.dateByAddingDays(-1, gap).value();
///     before.iso8601();  // "2024-03-30T02:00:00Z": 3:00 as well
class Calendar {
 public:
  explicit Calendar(TimeZone timeZone) : timeZone_(timeZone) {}

  [[nodiscard]] TimeZone timeZone() const { return timeZone_; }
  void setTimeZone(TimeZone timeZone) { timeZone_ = timeZone; }

  /// What the clock shows at an instant; a fraction of a second is cut off downwards.
  [[nodiscard]] ClockTime clockTime(Date date) const;
  /// The same as components, all six present.
  [[nodiscard]] DateComponents dateComponents(Date date) const;

  /// The instant at which the clock shows these components. Absent parts count as 1 for a month or
  /// a day and as 0 otherwise. Values out of range carry over: month 13 is the next January, day 45
  /// is counted from the 1st. Absent beyond about a million years from now.
  [[nodiscard]] std::optional<Date> date(const DateComponents& components) const;
  /// The same for the reading of a clock; beyond about 31 million years its nearest end counts.
  [[nodiscard]] Date date(ClockTime clockTime) const;

  /// The instant that many calendar days later (or, below 0, earlier) at the same time of the
  /// clock; a fraction of a second is kept. A day that the zone skipped as a whole is not counted.
  /// Absent where the result leaves the calendar's range.
  [[nodiscard]] std::optional<Date> dateByAddingDays(std::int64_t days, Date to) const;

  /// How many calendar days lie between two day numbers, positive when `to` is the later one. A day
  /// that the zone skipped as a whole is not counted, one that it repeated counts twice.
  [[nodiscard]] std::int64_t daysBetween(std::int64_t from, std::int64_t to) const;

  /// 1 is Sunday, 7 is Saturday.
  [[nodiscard]] std::int64_t weekday(Date date) const;
  /// The number of days in the month, or year, that holds the instant.
  [[nodiscard]] std::int64_t numberOfDaysInMonth(Date date) const;
  [[nodiscard]] std::int64_t numberOfDaysInYear(Date date) const;

 private:
  TimeZone timeZone_;
};

}  // namespace platform
