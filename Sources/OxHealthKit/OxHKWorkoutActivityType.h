#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/Platform.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace velloro {

/// What was done in a workout. The raw value is the case's name. The last six say where, too;
/// `running`, `cycling` and `walking` stand for both places.
enum class OxHKWorkoutActivityType {
  americanFootball,
  archery,
  australianFootball,
  badminton,
  barre,
  baseball,
  basketball,
  bowling,
  boxing,
  cardioDance,
  climbing,
  cooldown,
  coreTraining,
  cricket,
  crossCountrySkiing,
  crossTraining,
  curling,
  cycling,
  discSports,
  downhillSkiing,
  elliptical,
  equestrianSports,
  fencing,
  fishing,
  fitnessGaming,
  flexibility,
  functionalStrengthTraining,
  golf,
  gymnastics,
  handball,
  handCycling,
  highIntensityIntervalTraining,
  hiking,
  hockey,
  hunting,
  jumpRope,
  kickboxing,
  lacrosse,
  martialArts,
  mindAndBody,
  mixedCardio,
  paddleSports,
  pickleball,
  pilates,
  play,
  preparationAndRecovery,
  racquetball,
  rowing,
  rugby,
  running,
  sailing,
  skatingSports,
  snowboarding,
  snowSports,
  soccer,
  socialDance,
  softball,
  squash,
  stairClimbing,
  stairs,
  stepTraining,
  surfingSports,
  swimBikeRun,
  swimming,
  tableTennis,
  taiChi,
  tennis,
  trackAndField,
  traditionalStrengthTraining,
  transition,
  volleyball,
  walking,
  waterFitness,
  waterPolo,
  waterSports,
  wheelchairRunPace,
  wheelchairWalkPace,
  wrestling,
  yoga,
  other,
  runningIndoor,
  runningOutdoor,
  cyclingIndoor,
  cyclingOutdoor,
  walkingIndoor,
  walkingOutdoor
};

constexpr auto rawValues(std::type_identity<OxHKWorkoutActivityType>) {
  return caseNames<OxHKWorkoutActivityType::walkingOutdoor>();
}

enum class OxHKWorkoutLocation { indoor, outdoor };

/// Absent for a type that says no place.
///
///     location(OxHKWorkoutActivityType::cyclingIndoor);   // OxHKWorkoutLocation::indoor
///     location(OxHKWorkoutActivityType::cycling);         // absent
[[nodiscard]] std::optional<OxHKWorkoutLocation> location(OxHKWorkoutActivityType type);

/// The activity alone: `cycling` of `cyclingIndoor`. A type that says no place is itself.
[[nodiscard]] OxHKWorkoutActivityType withoutLocation(OxHKWorkoutActivityType type);

/// The types as a person would list them: where both places of an activity are chosen, the activity
/// alone stands for the two. In the order of the cases.
///
///     using enum OxHKWorkoutActivityType;
///     minimalWorkoutTypeList({yoga, runningOutdoor, runningIndoor});  // {running, yoga}
[[nodiscard]] std::vector<OxHKWorkoutActivityType> minimalWorkoutTypeList(
    std::set<OxHKWorkoutActivityType> types);

/// The key of the title in the string tables: "healthcategory.subcategory.runningIndoor".
[[nodiscard]] std::string titleKey(OxHKWorkoutActivityType type);

}  // namespace velloro
