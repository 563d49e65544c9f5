#pragma once

#include "Foundation/RawValue.h"
#include "OxKit/Platform.h"

#include <array>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <set>
#include <string>

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

// The day's name in the device's locale: "Tuesday", "Tue", "T".
[[nodiscard]] std::string localizedTitle(DayOfWeek day);
[[nodiscard]] std::string localizedShortTitle(DayOfWeek day);
[[nodiscard]] std::string localizedVeryShortTitle(DayOfWeek day);

/// The day on which weeks begin in the device's locale.
[[nodiscard]] std::optional<DayOfWeek> defaultFirstDayOfWeek();

/// A set of weekdays in the 16 bits that are stored: Sunday is 1, Monday 2, … Saturday 64.
///
///     const DaysOfWeek weekend{DaysOfWeek::saturday, DaysOfWeek::sunday};
///     weekend.rawValue;                                    // 65
///     weekend.contains(DaysOfWeek::sunday);                // true
struct DaysOfWeek {
  std::int16_t rawValue = 0;

  static const DaysOfWeek sunday, monday, tuesday, wednesday, thursday, friday, saturday;
  static const DaysOfWeek everyDay;

  constexpr DaysOfWeek() = default;
  explicit constexpr DaysOfWeek(std::int16_t bits) : rawValue(bits) {}
  constexpr DaysOfWeek(std::initializer_list<DaysOfWeek> days) {
    for (const DaysOfWeek day : days) rawValue |= day.rawValue;
  }
  explicit constexpr DaysOfWeek(DayOfWeek day)
      : rawValue(static_cast<std::int16_t>(1 << static_cast<int>(day))) {}

  bool operator==(const DaysOfWeek&) const = default;
  static constexpr auto codingValue = &DaysOfWeek::rawValue;

  [[nodiscard]] constexpr DaysOfWeek union_(DaysOfWeek other) const {
    return of(rawValue | other.rawValue);
  }
  [[nodiscard]] constexpr DaysOfWeek intersection(DaysOfWeek other) const {
    return of(rawValue & other.rawValue);
  }
  [[nodiscard]] constexpr DaysOfWeek symmetricDifference(DaysOfWeek other) const {
    return of(rawValue ^ other.rawValue);
  }
  [[nodiscard]] constexpr DaysOfWeek subtracting(DaysOfWeek other) const {
    return of(rawValue & ~other.rawValue);
  }
  [[nodiscard]] constexpr bool contains(DaysOfWeek other) const { return other.isSubset(*this); }
  [[nodiscard]] constexpr bool isSubset(DaysOfWeek other) const {
    return intersection(other) == *this;
  }
  [[nodiscard]] constexpr bool isSuperset(DaysOfWeek other) const { return other.isSubset(*this); }
  [[nodiscard]] constexpr bool isDisjoint(DaysOfWeek other) const {
    return intersection(other).isEmpty();
  }
  [[nodiscard]] constexpr bool isEmpty() const { return rawValue == 0; }

  /// Adds the days; false when all of them were in already.
  constexpr bool insert(DaysOfWeek days) {
    const bool isNew = !contains(days);
    *this = union_(days);
    return isNew;
  }
  /// Takes the days out and returns those that were in, absent when none was.
  constexpr std::optional<DaysOfWeek> remove(DaysOfWeek days) {
    const DaysOfWeek removed = intersection(days);
    *this = subtracting(days);
    return removed.isEmpty() ? std::nullopt : std::optional(removed);
  }
  /// Adds the days and returns those that were in already, absent when none was.
  constexpr std::optional<DaysOfWeek> update(DaysOfWeek days) {
    const DaysOfWeek before = intersection(days);
    *this = union_(days);
    return before.isEmpty() ? std::nullopt : std::optional(before);
  }

  /// The days as a set of values. Bits that stand for no day are left out.
  [[nodiscard]] std::set<DayOfWeek> daysOfWeek() const;

 private:
  static constexpr DaysOfWeek of(int bits) { return DaysOfWeek(static_cast<std::int16_t>(bits)); }
};

inline constexpr DaysOfWeek DaysOfWeek::sunday(DayOfWeek::sunday);
inline constexpr DaysOfWeek DaysOfWeek::monday(DayOfWeek::monday);
inline constexpr DaysOfWeek DaysOfWeek::tuesday(DayOfWeek::tuesday);
inline constexpr DaysOfWeek DaysOfWeek::wednesday(DayOfWeek::wednesday);
inline constexpr DaysOfWeek DaysOfWeek::thursday(DayOfWeek::thursday);
inline constexpr DaysOfWeek DaysOfWeek::friday(DayOfWeek::friday);
inline constexpr DaysOfWeek DaysOfWeek::saturday(DayOfWeek::saturday);
inline constexpr DaysOfWeek DaysOfWeek::everyDay(std::int16_t{127});

/// The bits of a set of days.
[[nodiscard]] DaysOfWeek daysOfWeek(const std::set<DayOfWeek>& days);

/// All seven days.
[[nodiscard]] const std::set<DayOfWeek>& everyDay();

}  // namespace velloro

template <>
struct std::hash<velloro::DaysOfWeek> {
  std::size_t operator()(velloro::DaysOfWeek days) const noexcept {
    return std::hash<std::int16_t>{}(days.rawValue);
  }
};
