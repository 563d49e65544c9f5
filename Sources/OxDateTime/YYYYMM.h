#pragma once

#include "Foundation/Time/Calendar.h"
#include "OxDateTime/DayOfWeek.h"
#include "OxDateTime/HHMMSS.h"
#include "OxKit/Platform.h"

#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace platform {
class Decoder;
class Encoder;
class Locale;
}  // namespace platform

namespace velloro {

struct YYYYMMDD;

/// A month. Stored and compared as y × 100 + m.
///
///     YYYYMM{2024, 1}.add(-1).intValue();       // 202312
///     YYYYMM{2024, 2}.lastDay().intValue();     // 20240229
struct YYYYMM {
  std::int64_t y = 0;
  std::int64_t m = 0;

  /// Absent below 1; nothing else is tested, so 202413 is month 13.
  [[nodiscard]] static std::optional<YYYYMM> fromRawValue(std::int64_t value);
  [[nodiscard]] static std::optional<YYYYMM> fromIntValue(std::int64_t value) {
    return fromRawValue(value);
  }
  /// Exactly six digits, "202403"; the month's range is not tested.
  [[nodiscard]] static std::optional<YYYYMM> fromString(std::string_view text);
  /// The month of today's logical day.
  [[nodiscard]] static YYYYMM thisMonth(HHMMSS startOfDay, TimeZone timeZone, Date now);

  [[nodiscard]] constexpr std::int64_t intValue() const {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(y) * 100 +
                                     static_cast<std::uint64_t>(m));
  }
  [[nodiscard]] constexpr std::int64_t rawValue() const { return intValue(); }
  /// "2024-03".
  [[nodiscard]] std::string debugDescription() const;
  /// Year and month only.
  [[nodiscard]] DateComponents dateComponents() const;

  constexpr bool operator==(const YYYYMM& other) const { return intValue() == other.intValue(); }
  constexpr auto operator<=>(const YYYYMM& other) const { return intValue() <=> other.intValue(); }

  /// In JSON one integer, `intValue`.
  void encode(Encoder& to) const;
  /// \throws DecodingError for an integer below 1.
  [[nodiscard]] static YYYYMM decode(const Decoder& from);

  [[nodiscard]] YYYYMMDD date(std::int64_t day) const;
  [[nodiscard]] YYYYMMDD firstDay() const;
  [[nodiscard]] YYYYMMDD lastDay() const;
  [[nodiscard]] std::int64_t numberOfDays() const;

  [[nodiscard]] YYYYMM add(std::int64_t numMonths) const;
  [[nodiscard]] YYYYMM nextMonth() const { return add(1); }
  [[nodiscard]] YYYYMM previousMonth() const { return add(-1); }
  [[nodiscard]] YYYYMM firstMonthOfYear() const { return {.y = y, .m = 1}; }
  [[nodiscard]] YYYYMM lastMonthOfYear() const { return {.y = y, .m = 12}; }
  /// Months from this one to another, positive when that lies later, and 1 more with
  /// `includeThisMonth`, whatever the sign.
  [[nodiscard]] std::int64_t distance(YYYYMM to, bool includeThisMonth) const;
  // The two operations of a strideable value, in months.
  [[nodiscard]] YYYYMM advanced(std::int64_t by) const { return add(by); }
  [[nodiscard]] std::int64_t distance(YYYYMM to) const { return distance(to, false); }

  /// The blanks before the 1st and behind the last day in a month drawn as rows of weeks.
  [[nodiscard]] std::int64_t numberOfDaysInWeekBeforeMonthStarts(DayOfWeek firstDayOfWeek) const;
  [[nodiscard]] std::int64_t numberOfDaysInWeekAfterMonthEnds(DayOfWeek firstDayOfWeek) const;

  // Texts in a locale: "March", "March 2024", "Mar 2024", "2024".
  [[nodiscard]] std::string localizedTitle(const Locale& locale) const;
  [[nodiscard]] std::string localizedTitleWithYear(const Locale& locale) const;
  [[nodiscard]] std::string localizedShortTitleWithYear(const Locale& locale) const;
  [[nodiscard]] std::string localizedYear(const Locale& locale) const;
};

}  // namespace velloro

template <>
struct std::hash<velloro::YYYYMM> {
  std::size_t operator()(const velloro::YYYYMM& month) const noexcept {
    return std::hash<std::int64_t>{}(month.intValue());
  }
};
