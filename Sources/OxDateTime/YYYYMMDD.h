#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Time/Calendar.h"
#include "OxDateTime/DayOfWeek.h"
#include "OxDateTime/HHMMSS.h"
#include "OxDateTime/YYYYMM.h"
#include "OxKit/Platform.h"

#include <algorithm>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace velloro {

/// The zone in which days are counted; absent for days of which none was ever skipped or repeated.
using CountedIn = std::optional<TimeZone>;

/// A logical day. Stored and compared as y × 10000 + m × 100 + d.
///
/// A logical day begins at a user's `startOfDay`, at any hour of the clock. Up to noon it begins on
/// the calendar day whose name it bears: a day that starts at 03:00 holds the early hours of the
/// next morning. After noon it begins on the evening before: a day that starts at 18:00 is named
/// after the date on which most of it lies.
///
///     const HHMMSS three{.h = 3};
///     const Date night = Date::fromISO8601("2024-03-07T02:59:59+01:00").value();
///     YYYYMMDD::fromDate(three, night, berlin);                      // 20240306
///     YYYYMMDD{2024, 3, 6}.dateAt(three, {.h = 2}, berlin) == night - 59 * 60 - 59;    // true
///
/// Days are counted from noon to noon, so no clock change moves a result by a day; only where a
/// zone once skipped or repeated a whole day does the count follow it. So a function that counts
/// takes the zone as its last argument. Without one, no day is skipped or repeated. Values that
/// name no real day (20241345) count on from the ones that do.
struct YYYYMMDD {
  std::int64_t y = 0;
  std::int64_t m = 0;
  std::int64_t d = 0;

  struct Range;

  /// The stored form of a missing day.
  static constexpr std::int64_t emptyValue = 0;

  /// Absent below 1; nothing else is tested.
  [[nodiscard]] static std::optional<YYYYMMDD> fromRawValue(std::int64_t value);
  [[nodiscard]] static std::optional<YYYYMMDD> fromIntValue(std::int64_t value) {
    return fromRawValue(value);
  }
  /// Exactly eight digits that name a day of the calendar, "20240307"; else absent.
  [[nodiscard]] static std::optional<YYYYMMDD> fromString(std::string_view text);
  /// The logical day that holds an instant, by what the zone's clock shows. (So an hour that the
  /// clock repeats is read twice: a start of day inside it begins the day at its first showing, and
  /// the second pass up to it reads as the day before once more. One inside an hour that the clock
  /// skips has been passed as soon as the clock moves on, while `startOfDay` names an instant by
  /// the length of the gap behind it.)
  [[nodiscard]] static YYYYMMDD fromDate(HHMMSS startOfDay, Date date, TimeZone timeZone);
  /// The logical day that holds the present instant.
  [[nodiscard]] static YYYYMMDD today(HHMMSS startOfDay, TimeZone timeZone, Date now) {
    return fromDate(startOfDay, now, timeZone);
  }

  [[nodiscard]] constexpr std::int64_t intValue() const {
    // Unsigned, since what stands in a store may be beyond any day, and must not be undefined.
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(y) * 10000 +
                                     static_cast<std::uint64_t>(m) * 100 +
                                     static_cast<std::uint64_t>(d));
  }
  [[nodiscard]] constexpr std::int64_t rawValue() const { return intValue(); }
  /// "2024-03-07".
  [[nodiscard]] std::string debugDescription() const;
  [[nodiscard]] YYYYMM yyyymm() const { return {.y = y, .m = m}; }
  /// Year, month and day only.
  [[nodiscard]] DateComponents dateComponents() const;

  constexpr bool operator==(const YYYYMMDD& other) const { return intValue() == other.intValue(); }
  constexpr auto operator<=>(const YYYYMMDD& other) const {
    return intValue() <=> other.intValue();
  }

  /// In JSON one integer, `intValue`.
  void encode(Encoder& to) const;
  /// \throws DecodingError for an integer below 1.
  [[nodiscard]] static YYYYMMDD decode(const Decoder& from);

  [[nodiscard]] YYYYMMDD nextDay(const CountedIn& timeZone) const;
  [[nodiscard]] YYYYMMDD previousDay(const CountedIn& timeZone) const;
  [[nodiscard]] YYYYMMDD add(std::int64_t numDays, const CountedIn& timeZone) const;
  [[nodiscard]] DayOfWeek dayOfWeek(const CountedIn& timeZone) const;
  /// Days from this one to another, positive when that lies later, and 1 more with
  /// `includeThisDay`, whatever the sign.
  [[nodiscard]] std::int64_t distance(YYYYMMDD to, bool includeThisDay,
                                      const CountedIn& timeZone) const;
  // The two operations of a strideable value, in days.
  [[nodiscard]] YYYYMMDD advanced(std::int64_t by) const { return add(by, {}); }
  [[nodiscard]] std::int64_t distance(YYYYMMDD to) const { return distance(to, false, {}); }

  // The same by the calendar's instants: noon, moved, and read back. The functions above take this
  // road themselves where it can lead elsewhere.
  [[nodiscard]] YYYYMMDD nextDayUsingCalendar(const Calendar& calendar) const;
  [[nodiscard]] YYYYMMDD addUsingCalendar(const Calendar& calendar, std::int64_t numDays) const;

  [[nodiscard]] YYYYMMDD startOfWeek(DayOfWeek firstDayOfWeek, const CountedIn& timeZone) const;
  [[nodiscard]] YYYYMMDD endOfWeek(DayOfWeek firstDayOfWeek, const CountedIn& timeZone) const;
  /// The two weeks that hold this day. Their phase is that of the day itself, counted from the
  /// reference day (2000-01-01 when absent), not that of its week's first day.
  [[nodiscard]] YYYYMMDD startOfFortnight(DayOfWeek firstDayOfWeek,
                                          std::optional<YYYYMMDD> referenceDate,
                                          const CountedIn& timeZone) const;
  [[nodiscard]] YYYYMMDD endOfFortnight(DayOfWeek firstDayOfWeek,
                                        std::optional<YYYYMMDD> referenceDate,
                                        const CountedIn& timeZone) const;

  // Days from this one to the last of its week, fortnight, month or year: 0 on the last day, and 1
  // more with `includeThisDay`.
  [[nodiscard]] std::int64_t numberOfDaysRemainingThisWeek(DayOfWeek firstDayOfWeek,
                                                           bool includeThisDay,
                                                           const CountedIn& timeZone) const;
  [[nodiscard]] std::int64_t numberOfDaysRemainingThisFortnight(
      DayOfWeek firstDayOfWeek, bool includeThisDay, std::optional<YYYYMMDD> referenceDate,
      const CountedIn& timeZone) const;
  [[nodiscard]] std::int64_t numberOfDaysRemainingThisMonth(bool includeThisDay,
                                                            const CountedIn& timeZone) const;
  [[nodiscard]] std::int64_t numberOfDaysRemainingThisYear(bool includeThisDay,
                                                           const CountedIn& timeZone) const;

  /// The instant of a time of the clock within this logical day: the reverse of `fromDate`. A time
  /// that a clock change skips moves forward by the gap, a repeated one means its first showing.
  [[nodiscard]] Date dateAt(HHMMSS startOfDay, HHMMSS time, TimeZone timeZone) const;
  [[nodiscard]] Date dateAt(HHMMSS startOfDay, std::int64_t hour, std::int64_t minute,
                            std::int64_t second, TimeZone timeZone) const {
    return dateAt(startOfDay, HHMMSS{.h = hour, .m = minute, .s = second}, timeZone);
  }
  /// The instant at which this logical day begins.
  [[nodiscard]] Date startOfDay(HHMMSS startOfDay, TimeZone timeZone) const {
    return dateAt(startOfDay, startOfDay, timeZone);
  }
  /// This thread's calendar, set to a zone; see `currentThreadCalendar`.
  [[nodiscard]] static Calendar& calendar(TimeZone timeZone);

  /// Days since 1970-01-01, as if no zone had ever skipped or repeated a day.
  [[nodiscard]] constexpr std::int64_t dayNumber() const {
    return daysFromCivil({.y = y, .m = m, .d = d});
  }
  [[nodiscard]] static constexpr YYYYMMDD fromDayNumber(std::int64_t dayNumber) {
    const CivilDay day = civilFromDays(dayNumber);
    return {.y = day.y, .m = day.m, .d = day.d};
  }

 private:
  static std::int64_t logicalDayNumber(std::int64_t localSeconds, HHMMSS startOfDay);
  static YYYYMMDD fromClockDay(std::int64_t clockDay, std::int64_t shift, TimeZone timeZone);
};

/// A stretch of days with both ends in it; an absent end is open.
struct YYYYMMDD::Range {
  std::optional<YYYYMMDD> minDate = {};
  std::optional<YYYYMMDD> maxDate = {};

  [[nodiscard]] static Range from(YYYYMMDD date) { return {.minDate = date}; }
  [[nodiscard]] static Range to(YYYYMMDD date) { return {.maxDate = date}; }

  bool operator==(const Range&) const = default;
  static constexpr auto codingKeys =
      keys(key("minDate", &Range::minDate), key("maxDate", &Range::maxDate));
};

/// The number of the logical day that holds a second of the local clock. A day that starts after
/// noon starts on the evening before the midnight of its name.
inline std::int64_t YYYYMMDD::logicalDayNumber(std::int64_t localSeconds, HHMMSS startOfDay) {
  const std::int64_t start = std::clamp<std::int64_t>(startOfDay.intValue(), 0, 86400);
  const bool startsOnOwnDate = start <= HHMMSS::midday.intValue();
  return dayOfSeconds(localSeconds - (startsOnOwnDate ? start : start - 86400));
}

// In the header, since every walk over entries and samples calls it for each of them.
inline YYYYMMDD YYYYMMDD::fromDate(HHMMSS startOfDay, Date date, TimeZone timeZone) {
  const std::int64_t local = timeZone.localSecondsAt(date);
  const std::int64_t logicalDay = logicalDayNumber(local, startOfDay);
  if (!timeZone.hasSkippedOrRepeatedDays()) [[likely]]
    return fromDayNumber(logicalDay);
  const std::int64_t clockDay = dayOfSeconds(local);
  return fromClockDay(clockDay, logicalDay - clockDay, timeZone);
}

}  // namespace velloro

template <>
struct std::hash<velloro::YYYYMMDD> {
  std::size_t operator()(const velloro::YYYYMMDD& day) const noexcept {
    return std::hash<std::int64_t>{}(day.intValue());
  }
};
