#pragma once

#include "OxKit/OptionSet.h"
#include "OxKit/Platform.h"

#include <cstdint>

namespace velloro {

/// A set of days of the month in the 64 bits that are stored. The Nth is bit N; the last day is bit
/// 63, the day before it bit 62, and so on down to bit 56.
///
///     const DaysOfMonth days{DaysOfMonth::day1, DaysOfMonth::lastDay()};
///     days.contains(DaysOfMonth::day(1));                            // true
///     DaysOfMonth::lastDay(1) == DaysOfMonth::lastDayMinus1;         // true
///     DaysOfMonth::lastDay().rawValue < 0;                           // true: the sign bit
struct DaysOfMonth : OptionSet<DaysOfMonth, std::int64_t> {
  static const DaysOfMonth day1, day2, day3, day4, day5, day6, day7, day8, day9, day10, day11,
      day12, day13, day14, day15, day16, day17, day18, day19, day20, day21, day22, day23, day24,
      day25, day26, day27, day28, day29, day30, day31;
  static const DaysOfMonth lastDayMinus1, lastDayMinus2, lastDayMinus3, lastDayMinus4,
      lastDayMinus5, lastDayMinus6, lastDayMinus7;

  using OptionSet::OptionSet;

  static constexpr auto codingValue = &DaysOfMonth::rawValue;

  /// Bit `n`; the empty set when `n` is no bit's number, 0 to 63.
  [[nodiscard]] static constexpr DaysOfMonth day(std::int64_t n) {
    if (n < 0 || n > 63) return {};
    return DaysOfMonth(static_cast<std::int64_t>(std::uint64_t{1} << n));
  }
  /// The last day of the month, or the one so many days before it; the empty set when that leaves
  /// the bits.
  [[nodiscard]] static constexpr DaysOfMonth lastDay(std::int64_t offset = 0) {
    return offset < 0 || offset > 63 ? DaysOfMonth() : day(63 - offset);
  }
};

inline constexpr DaysOfMonth DaysOfMonth::day1 = day(1), DaysOfMonth::day2 = day(2),
                             DaysOfMonth::day3 = day(3), DaysOfMonth::day4 = day(4),
                             DaysOfMonth::day5 = day(5), DaysOfMonth::day6 = day(6),
                             DaysOfMonth::day7 = day(7), DaysOfMonth::day8 = day(8),
                             DaysOfMonth::day9 = day(9), DaysOfMonth::day10 = day(10),
                             DaysOfMonth::day11 = day(11), DaysOfMonth::day12 = day(12),
                             DaysOfMonth::day13 = day(13), DaysOfMonth::day14 = day(14),
                             DaysOfMonth::day15 = day(15), DaysOfMonth::day16 = day(16),
                             DaysOfMonth::day17 = day(17), DaysOfMonth::day18 = day(18),
                             DaysOfMonth::day19 = day(19), DaysOfMonth::day20 = day(20),
                             DaysOfMonth::day21 = day(21), DaysOfMonth::day22 = day(22),
                             DaysOfMonth::day23 = day(23), DaysOfMonth::day24 = day(24),
                             DaysOfMonth::day25 = day(25), DaysOfMonth::day26 = day(26),
                             DaysOfMonth::day27 = day(27), DaysOfMonth::day28 = day(28),
                             DaysOfMonth::day29 = day(29), DaysOfMonth::day30 = day(30),
                             DaysOfMonth::day31 = day(31);
inline constexpr DaysOfMonth DaysOfMonth::lastDayMinus1 = lastDay(1),
                             DaysOfMonth::lastDayMinus2 = lastDay(2),
                             DaysOfMonth::lastDayMinus3 = lastDay(3),
                             DaysOfMonth::lastDayMinus4 = lastDay(4),
                             DaysOfMonth::lastDayMinus5 = lastDay(5),
                             DaysOfMonth::lastDayMinus6 = lastDay(6),
                             DaysOfMonth::lastDayMinus7 = lastDay(7);

}  // namespace velloro
