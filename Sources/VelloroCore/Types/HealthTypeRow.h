#pragma once

#include "OxHealthKit/OxHKObjectType.h"
#include "OxKit/Platform.h"
#include "VelloroCore/Types/TypeSpeed.h"
#include "VelloroCore/Types/TypeUnit.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace velloro {

enum class HealthType : std::uint8_t;

/// What a row of the table of health types (HealthType.h) is made of.
namespace health_type_detail {

/// A list of at most N values, fit for a constant.
template <typename T, std::size_t N>
struct Few {
  std::array<T, N> values{};
  std::size_t count = 0;

  constexpr Few() = default;
  template <typename... Value>
  explicit constexpr Few(Value... value) : values{value...}, count(sizeof...(Value)) {}

  [[nodiscard]] constexpr const T* begin() const { return values.data(); }
  [[nodiscard]] constexpr const T* end() const { return values.data() + count; }
  [[nodiscard]] constexpr std::size_t size() const { return count; }
};

struct Units {
  std::optional<TypeUnit> usual;
  Few<TypeUnit, 7> options;  ///< In the order in which they are offered.
};

template <typename... Unit>
constexpr Units units(TypeUnit usual, Unit... others) {
  return {usual, Few<TypeUnit, 7>(usual, others...)};
}

inline constexpr Units noUnit;
inline constexpr Units hours = units(TypeUnit::durationHours);
inline constexpr Units minutes = units(TypeUnit::durationMinutes);
inline constexpr Units timesOfDay = units(TypeUnit::timeOfDay);
inline constexpr Units workoutUnits = units(
    TypeUnit::durationMinutes, TypeUnit::distanceKm, TypeUnit::distanceMiles,
    TypeUnit::distanceYards, TypeUnit::distanceMeters, TypeUnit::calories, TypeUnit::kilojoules);
inline constexpr Units stepsOrDistance =
    units(TypeUnit::steps, TypeUnit::distanceKm, TypeUnit::distanceMiles);
inline constexpr Units distance = units(TypeUnit::distanceKm, TypeUnit::distanceMiles);
inline constexpr Units lengths = units(TypeUnit::distanceMeters, TypeUnit::distanceYards);
inline constexpr Units flights = units(TypeUnit::flights);
inline constexpr Units pushes = units(TypeUnit::pushes);
inline constexpr Units energy = units(TypeUnit::calories, TypeUnit::kilojoules);
inline constexpr Units volume = {TypeUnit::cupsUS,
                                 Few<TypeUnit, 7>(TypeUnit::fluidOuncesUS, TypeUnit::litres,
                                                  TypeUnit::millilitres, TypeUnit::cupsUS)};
inline constexpr Units drinks = units(TypeUnit::drinks);
inline constexpr Units grams = units(TypeUnit::grams);
inline constexpr Units milligrams = units(TypeUnit::milligrams);
inline constexpr Units micrograms = units(TypeUnit::micrograms);

struct Speeds {
  SpeedSelectionType selection = SpeedSelectionType::noSpeed;
  TypeSpeeds usual;
  Few<TypeSpeed, 8> options;
};

inline constexpr Speeds noSpeeds;
inline constexpr Speeds stagesOfSleep = {
    SpeedSelectionType::multi,
    {TypeSpeed::sleepAsleep, TypeSpeed::sleepCore, TypeSpeed::sleepDeep, TypeSpeed::sleepREM},
    Few<TypeSpeed, 8>(TypeSpeed::sleepAsleep, TypeSpeed::sleepCore, TypeSpeed::sleepDeep,
                      TypeSpeed::sleepREM, TypeSpeed::inBed)};
inline constexpr Speeds sidesOfBedtime = {
    SpeedSelectionType::single,
    {TypeSpeed::inBedBefore},
    Few<TypeSpeed, 8>(TypeSpeed::asleepAfter, TypeSpeed::asleepBefore, TypeSpeed::awakeBefore,
                      TypeSpeed::awakeAfter, TypeSpeed::inBedBefore, TypeSpeed::inBedAfter,
                      TypeSpeed::outOfBedBefore, TypeSpeed::outOfBedAfter)};
inline constexpr Speeds walkOrRun = {SpeedSelectionType::single,
                                     {TypeSpeed::walk},
                                     Few<TypeSpeed, 8>(TypeSpeed::walk, TypeSpeed::run)};
inline constexpr Speeds sidesOfDeficit = {
    SpeedSelectionType::single,
    {TypeSpeed::greaterThan},
    Few<TypeSpeed, 8>(TypeSpeed::greaterThan, TypeSpeed::lessThan)};

using Reads = Few<OxHKObjectType, 4>;
using Q = OxHKSampleType::QuantityType;
using C = OxHKSampleType::CategoryType;
inline constexpr auto activitySummary = OxHKObjectType::activitySummary();
inline constexpr auto workouts = OxHKSampleType::workout();
inline constexpr auto audiograms = OxHKSampleType::audiogram();
inline constexpr auto electrocardiograms = OxHKSampleType::electrocardiogram();

constexpr OxHKObjectType object(OxHKObjectType type) {
  return type;
}
constexpr OxHKObjectType object(OxHKSampleType type) {
  return OxHKObjectType::sample(type);
}
constexpr OxHKObjectType object(Q type) {
  return object(OxHKSampleType::quantity(type));
}
constexpr OxHKObjectType object(C type) {
  return object(OxHKSampleType::category(type));
}

template <typename... Type>
constexpr Reads reads(Type... type) {
  return Reads(object(type)...);
}

/// How the key of a type's word in the string tables is made of its stem.
struct Title {
  enum class Form : std::uint8_t {
    none,
    plain,             ///< The stem alone.
    breakable,         ///< With ".breaks" behind it for the form with line breaks.
    beforeUnit,        ///< With the unit behind it.
    behindUnit,        ///< With the unit before it; breakable.
    behindUnitBySign,  ///< With the unit before and ".over" or ".under" behind it; breakable.
    bySign,            ///< With "More" or "Less" behind it.
    deficit,           ///< With the side and whether the amount is zero behind it.
  };
  using enum Form;

  Form form = none;
  std::string_view stem;
};

inline constexpr Title noTitle;

enum Traits : std::uint8_t {
  none = 0,
  hourly = 1,      ///< New data is announced once an hour, not at once.
  adjustable = 2,  ///< The difficulty can be changed by changing the target.
  timed = 4,       ///< Can be done with a timer running.
  ofWorkouts = 8,  ///< One chooses the workouts that count.
};

constexpr Traits operator|(Traits a, Traits b) {
  return static_cast<Traits>(std::uint8_t{a} | std::uint8_t{b});
}

struct Row {
  HealthType value;
  std::string_view raw;
  Units units;
  Reads reads;
  Title title = noTitle;
  Traits traits = none;
  Speeds speeds = noSpeeds;
};

}  // namespace health_type_detail
}  // namespace velloro
