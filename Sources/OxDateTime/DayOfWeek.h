#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/EnumSet.h"
#include "OxKit/OptionSet.h"
#include "OxKit/Platform.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace platform {
class Locale;
}

namespace velloro {

/// A day of the week; its raw value is stored.
enum class DayOfWeek : std::int8_t {
  sunday,
  monday,
  tuesday,
  wednesday,
  thursday,
  friday,
  saturday,
};

constexpr auto rawValues(std::type_identity<DayOfWeek>) {
  using enum DayOfWeek;
  return rawIntegers<DayOfWeek>({{sunday, 0},
                                 {monday, 1},
                                 {tuesday, 2},
                                 {wednesday, 3},
                                 {thursday, 4},
                                 {friday, 5},
                                 {saturday, 6}});
}

/// The same seven days in the platform calendar's numbering, 1 (Sunday) to 7 (Saturday).
enum class CalendarDayOfWeek : std::int8_t {
  sunday = 1,
  monday,
  tuesday,
  wednesday,
  thursday,
  friday,
  saturday,
};

constexpr auto rawValues(std::type_identity<CalendarDayOfWeek>) {
  using enum CalendarDayOfWeek;
  return rawIntegers<CalendarDayOfWeek>({{sunday, 1},
                                         {monday, 2},
                                         {tuesday, 3},
                                         {wednesday, 4},
                                         {thursday, 5},
                                         {friday, 6},
                                         {saturday, 7}});
}

[[nodiscard]] constexpr CalendarDayOfWeek calendarDayOfWeek(DayOfWeek day) {
  return static_cast<CalendarDayOfWeek>(static_cast<int>(day) + 1);
}
[[nodiscard]] constexpr DayOfWeek dayOfWeek(CalendarDayOfWeek day) {
  return static_cast<DayOfWeek>(static_cast<int>(day) - 1);
}

/// The day that many days later, or, below 0, earlier.
[[nodiscard]] constexpr DayOfWeek add(DayOfWeek day, std::int64_t numDays) {
  return static_cast<DayOfWeek>(((static_cast<int>(day) + numDays % 7) + 7) % 7);
}
[[nodiscard]] constexpr DayOfWeek nextDay(DayOfWeek day) {
  return add(day, 1);
}
[[nodiscard]] constexpr DayOfWeek previousDay(DayOfWeek day) {
  return add(day, -1);
}

/// The seven days in week order from a first day on.
///
///     everyDay(DayOfWeek::monday).back();  // DayOfWeek::sunday
[[nodiscard]] constexpr std::array<DayOfWeek, 7> everyDay(DayOfWeek firstDayOfWeek) {
  std::array<DayOfWeek, 7> week{};
  for (int i = 0; i < 7; ++i) week[static_cast<std::size_t>(i)] = add(firstDayOfWeek, i);
  return week;
}

// The day's name in a locale: "Tuesday", "Tue", "T".
[[nodiscard]] std::string localizedTitle(DayOfWeek day, const Locale& locale);
[[nodiscard]] std::string localizedShortTitle(DayOfWeek day, const Locale& locale);
[[nodiscard]] std::string localizedVeryShortTitle(DayOfWeek day, const Locale& locale);

/// The day on which weeks begin in a locale.
[[nodiscard]] std::optional<DayOfWeek> defaultFirstDayOfWeek(const Locale& locale);
/// The same, and Sunday where there is none.
[[nodiscard]] DayOfWeek localesFirstDayOfWeek(const Locale& locale);

/// A set of weekdays in the 16 bits that are stored: Sunday is 1, Monday 2, … Saturday 64.
///
///     const DaysOfWeek weekend{DaysOfWeek::saturday, DaysOfWeek::sunday};
///     weekend.rawValue;                                    // 65
///     weekend.contains(DaysOfWeek::sunday);                // true
struct DaysOfWeek : OptionSet<DaysOfWeek, std::int16_t> {
  static const DaysOfWeek sunday, monday, tuesday, wednesday, thursday, friday, saturday;
  static const DaysOfWeek everyDay;

  using OptionSet::OptionSet;
  explicit constexpr DaysOfWeek(DayOfWeek day)
      : DaysOfWeek(static_cast<std::int16_t>(1 << static_cast<int>(day))) {}

  static constexpr auto codingValue = &DaysOfWeek::rawValue;

  /// The days as a set of values. Bits that stand for no day are left out.
  [[nodiscard]] constexpr EnumSet<DayOfWeek> daysOfWeek() const;
};

inline constexpr DaysOfWeek DaysOfWeek::sunday(DayOfWeek::sunday);
inline constexpr DaysOfWeek DaysOfWeek::monday(DayOfWeek::monday);
inline constexpr DaysOfWeek DaysOfWeek::tuesday(DayOfWeek::tuesday);
inline constexpr DaysOfWeek DaysOfWeek::wednesday(DayOfWeek::wednesday);
inline constexpr DaysOfWeek DaysOfWeek::thursday(DayOfWeek::thursday);
inline constexpr DaysOfWeek DaysOfWeek::friday(DayOfWeek::friday);
inline constexpr DaysOfWeek DaysOfWeek::saturday(DayOfWeek::saturday);
inline constexpr DaysOfWeek DaysOfWeek::everyDay(std::int16_t{127});

/// All seven days.
[[nodiscard]] constexpr EnumSet<DayOfWeek> everyDay() {
  return DaysOfWeek::everyDay.daysOfWeek();
}

/// The bits of a set of days.
[[nodiscard]] constexpr DaysOfWeek daysOfWeek(EnumSet<DayOfWeek> days) {
  return DaysOfWeek(static_cast<std::int16_t>(days.rawValue));
}

// Both kinds of sets give a day the same bit.
constexpr EnumSet<DayOfWeek> DaysOfWeek::daysOfWeek() const {
  return EnumSet<DayOfWeek>(static_cast<std::uint64_t>(rawValue & everyDay.rawValue));
}

}  // namespace velloro

template <>
struct std::hash<velloro::DaysOfWeek> {
  std::size_t operator()(velloro::DaysOfWeek days) const noexcept {
    return std::hash<std::int16_t>{}(days.rawValue);
  }
};
