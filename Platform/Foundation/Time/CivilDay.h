#pragma once

#include <algorithm>
#include <compare>
#include <cstdint>

namespace platform {

/// A day of the proleptic Gregorian calendar, no zone attached. `m` counts from 1, `d` from 1.
struct CivilDay {
  std::int64_t y = 0;
  std::int64_t m = 0;
  std::int64_t d = 0;

  constexpr bool operator==(const CivilDay&) const = default;
  constexpr auto operator<=>(const CivilDay&) const = default;
};

/// The quotient rounded down, for a positive divisor.
constexpr std::int64_t floorDivide(std::int64_t dividend, std::int64_t divisor) {
  return dividend / divisor - (dividend % divisor < 0 ? 1 : 0);
}

/// The remainder in 0..<divisor, for a positive divisor.
constexpr std::int64_t floorModulo(std::int64_t dividend, std::int64_t divisor) {
  const std::int64_t remainder = dividend % divisor;
  return remainder < 0 ? remainder + divisor : remainder;
}

constexpr bool isLeapYear(std::int64_t y) {
  // A multiple of 100 is a multiple of 16 exactly when it is one of 400.
  return (y % 100 == 0 ? y & 15 : y & 3) == 0;
}

/// 28 to 31. `m` must lie in 1..12.
constexpr std::int64_t daysInMonth(std::int64_t y, std::int64_t m) {
  if (m == 2) return isLeapYear(y) ? 29 : 28;
  return 30 | (m ^ (m >> 3));
}

/// Whether year, month and day name a day that exists, in years 1 to 9999.
constexpr bool isRealDay(const CivilDay& day) {
  return day.y >= 1 && day.y <= 9999 && day.m >= 1 && day.m <= 12 && day.d >= 1 &&
         (day.d <= 28 || day.d <= daysInMonth(day.y, day.m));
}

namespace civil_day_detail {
// The algorithms are those of C. Neri and L. Schneider, "Euclidean affine functions and their
// application to calendar algorithms" (Software: Practice and Experience, 2022). They work on
// unsigned 32-bit numbers; whole 400-year cycles move any 64-bit day into that range and back.
inline constexpr std::int64_t daysPerCycle = 146097;
inline constexpr std::int64_t yearsPerCycle = 400;
inline constexpr std::int64_t cycles = 3670;  // years -1468000 to 1471744 need no cycle arithmetic
inline constexpr std::int64_t farthestYear = 10'000'000'000'000;
inline constexpr std::int64_t daysBefore1970 = 719468;  // from 0000-03-01
}  // namespace civil_day_detail

/// Days since 1970-01-01 of a real or unreal date: months beyond 1..12 carry into the year, and
/// days beyond the month simply count on, so 2024-13-45 is 2025-02-14. A year beyond ±10^13 counts
/// as that one.
constexpr std::int64_t daysFromCivil(const CivilDay& day) {
  using namespace civil_day_detail;
  std::int64_t y = day.y;
  std::int64_t m = day.m;
  if (m < 1 || m > 12) {
    y += floorDivide(m - 1, 12);
    m = floorModulo(m - 1, 12) + 1;
  }
  std::int64_t cycle = 0;
  if (y < -yearsPerCycle * cycles || y > yearsPerCycle * cycles) {
    y = std::clamp(y, -farthestYear, farthestYear);
    cycle = floorDivide(y, yearsPerCycle);
    y -= cycle * yearsPerCycle;
  }
  const std::uint32_t januaryOrFebruary = m <= 2 ? 1 : 0;
  const auto year = static_cast<std::uint32_t>(y + yearsPerCycle * cycles) - januaryOrFebruary;
  const auto month = static_cast<std::uint32_t>(m) + 12 * januaryOrFebruary;
  const std::uint32_t century = year / 100;
  const std::uint32_t yearDays = 1461 * year / 4 - century + century / 4;
  const std::uint32_t monthDays = (979 * month - 2919) / 32;
  return static_cast<std::int64_t>(yearDays) + monthDays + day.d - 1 - daysBefore1970 +
         (cycle - cycles) * daysPerCycle;
}

/// The day that lies `days` after 1970-01-01.
constexpr CivilDay civilFromDays(std::int64_t days) {
  using namespace civil_day_detail;
  // Every fourth year from 1900-03-01 to 2100-02-28 is a leap year, so these days need no
  // centuries.
  constexpr std::int64_t march1900 = -25508;
  constexpr std::uint64_t daysToMarch2100 = 73049;
  const auto since1900 = static_cast<std::uint64_t>(days - march1900);
  std::int64_t startYear = 1900;
  std::uint32_t n2 = 4 * static_cast<std::uint32_t>(since1900) + 3;
  if (since1900 >= daysToMarch2100) {
    std::int64_t shifted = days + daysBefore1970 + cycles * daysPerCycle;
    std::int64_t cycle = 0;
    if (shifted < 0 || shifted >= 2 * cycles * daysPerCycle) {
      cycle = floorDivide(shifted, daysPerCycle);
      shifted -= cycle * daysPerCycle;
    }
    const std::uint32_t n1 = 4 * static_cast<std::uint32_t>(shifted) + 3;
    startYear = 100 * std::int64_t{n1 / 146097} + (cycle - cycles) * yearsPerCycle;
    n2 = n1 % 146097 | 3;
  }
  const std::uint64_t p2 = std::uint64_t{2939745} * n2;
  const auto yearsOn = static_cast<std::uint32_t>(p2 >> 32);
  const std::uint32_t dayOfYear = static_cast<std::uint32_t>(p2) / 2939745 / 4;
  const std::uint32_t n3 = 2141 * dayOfYear + 197913;
  const std::uint32_t januaryOrFebruary = dayOfYear >= 306 ? 1 : 0;
  return {.y = startYear + yearsOn + januaryOrFebruary,
          .m = (n3 >> 16) - 12 * januaryOrFebruary,
          .d = (n3 & 0xFFFF) / 2141 + 1};
}

/// The day number that holds a second counted from 1970-01-01 00:00:00 on the same clock, within
/// about 46 million years. One unsigned division, where rounding a signed one down needs two.
constexpr std::int64_t dayOfSeconds(std::int64_t seconds) {
  constexpr std::int64_t bias = std::int64_t{1} << 34;
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(seconds + bias * 86400) / 86400) -
         bias;
}

/// 0 is Sunday, 6 is Saturday.
constexpr std::int64_t weekdayOfDays(std::int64_t days) {
  return floorModulo(days + 4, 7);
}

}  // namespace platform
