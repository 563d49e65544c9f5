#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace velloro {

struct OxHKUnit;

/// The unit in which the target of an automatic task is given; `AutomaticTaskType::TypeUnit`.
///
///     convert(90, TypeUnit::durationMinutes, TypeUnit::durationHours);   // 1.5
///     convert(5, TypeUnit::distanceKm, TypeUnit::distanceMeters);        // absent: no durations
///     convertToTimeInterval(10, TypeUnit::durationMinutes);              // 600: seconds
///
/// A whole number that was converted comes back as that number.
enum class TypeUnit : std::uint8_t {
  distanceKm,
  distanceMeters,
  distanceMiles,
  distanceYards,
  steps,
  pushes,
  drinks,
  fluidOuncesUS,
  litres,
  millilitres,
  cupsUS,
  calories,  ///< Kilocalories.
  kilojoules,
  durationSeconds,
  durationMinutes,
  durationHours,
  flights,
  milligrams,
  micrograms,
  grams,
  timeOfDay,  ///< The quantity is the `intValue` of an `HHMMSS`.
};

namespace type_unit_detail {
enum class Kind : std::uint8_t { distance, count, volume, energy, duration, mass, timeOfDay };

struct Row {
  TypeUnit value;
  std::string_view raw;
  Kind kind;
  std::string_view healthKitUnit;  ///< Empty for none.
  double size = 0;                 ///< A distance in metres, a duration in seconds.
};

inline constexpr Row rows[] = {
    {TypeUnit::distanceKm, "km", Kind::distance, "km", 1000},
    {TypeUnit::distanceMeters, "m", Kind::distance, "m", 1},
    {TypeUnit::distanceMiles, "miles", Kind::distance, "mi", 1609.344},
    {TypeUnit::distanceYards, "yd", Kind::distance, "yd", 0.9144},
    {TypeUnit::steps, "steps", Kind::count, "count"},
    {TypeUnit::pushes, "pushes", Kind::count, "count"},
    {TypeUnit::drinks, "drinks", Kind::count, "count"},
    {TypeUnit::fluidOuncesUS, "floz_us", Kind::volume, "fl_oz_us"},
    {TypeUnit::litres, "litres", Kind::volume, "L"},
    {TypeUnit::millilitres, "mls", Kind::volume, "mL"},
    {TypeUnit::cupsUS, "cups_us", Kind::volume, "cup_us"},
    {TypeUnit::calories, "kcal", Kind::energy, "kcal"},
    {TypeUnit::kilojoules, "kj", Kind::energy, "kJ"},
    {TypeUnit::durationSeconds, "seconds", Kind::duration, "s", 1},
    {TypeUnit::durationMinutes, "minutes", Kind::duration, "min", 60},
    {TypeUnit::durationHours, "hours", Kind::duration, "hr", 3600},
    {TypeUnit::flights, "flights", Kind::count, "count"},
    {TypeUnit::milligrams, "milligrams", Kind::mass, "mg"},
    {TypeUnit::micrograms, "micrograms", Kind::mass, "mcg"},
    {TypeUnit::grams, "grams", Kind::mass, "g"},
    {TypeUnit::timeOfDay, "timeOfDay", Kind::timeOfDay, ""},
};
}  // namespace type_unit_detail

constexpr auto rawValues(std::type_identity<TypeUnit>) {
  return rawColumn(type_unit_detail::rows);
}

[[nodiscard]] constexpr bool isDistance(TypeUnit unit) {
  return rowOf(type_unit_detail::rows, unit).kind == type_unit_detail::Kind::distance;
}
[[nodiscard]] constexpr bool isVolume(TypeUnit unit) {
  return rowOf(type_unit_detail::rows, unit).kind == type_unit_detail::Kind::volume;
}
[[nodiscard]] constexpr bool isEnergy(TypeUnit unit) {
  return rowOf(type_unit_detail::rows, unit).kind == type_unit_detail::Kind::energy;
}
[[nodiscard]] constexpr bool isDuration(TypeUnit unit) {
  return rowOf(type_unit_detail::rows, unit).kind == type_unit_detail::Kind::duration;
}
/// Steps, pushes, drinks and flights.
[[nodiscard]] constexpr bool isCount(TypeUnit unit) {
  return rowOf(type_unit_detail::rows, unit).kind == type_unit_detail::Kind::count;
}
/// Whether there can be more or less of it: everything but a time of day.
[[nodiscard]] constexpr bool isQuantifiable(TypeUnit unit) {
  return unit != TypeUnit::timeOfDay;
}

/// Absent unless the units are the same, or both are durations.
[[nodiscard]] std::optional<double> convert(double quantity, TypeUnit from, TypeUnit to);

// A duration in its unit to and from seconds; of any other unit the value as it is.
[[nodiscard]] double convertToTimeInterval(double value, TypeUnit unit);
[[nodiscard]] double convertFromTimeInterval(double seconds, TypeUnit unit);

/// A distance in its unit; absent for any other unit.
[[nodiscard]] std::optional<double> convertFromMetres(double metres, TypeUnit unit);

/// The health store's unit; absent for a time of day.
[[nodiscard]] std::optional<OxHKUnit> healthKitUnit(TypeUnit unit);

// Amounts as they are shown: 0 stays 0, any other is rounded to one decimal place.
//
//     normalizeWaterValue(0.04, TypeUnit::litres);     // 0.1
//     normalizeWaterValue(0.4, TypeUnit::cupsUS);      // 1
//     normalizeDistanceValue(4.96);                    // 5

/// At least 1 fluid ounce or cup, or 0.1 of another unit.
[[nodiscard]] double normalizeWaterValue(double quantity, TypeUnit unit);
[[nodiscard]] double normalizeDistanceValue(double quantity);

}  // namespace velloro
