#include "Health/WorkoutChoice.h"

#include "OxHealthKit/HKObjects.h"

#include <algorithm>

namespace velloro {

using Activity = OxHKWorkoutActivityType;

WorkoutChoice WorkoutChoice::of(const AutomaticTaskType& type) {
  if (type.type == HealthType::cycle) return {.activities = {Activity::cycling}};
  if (type.type == HealthType::swimDistance) return {.activities = {Activity::swimming}};
  if (type.type == HealthType::runOrWalk) return {.activities = {Activity::running}};
  if (!type.extra || type.extra->workoutTypes.empty()) return {.takesAll = true};
  WorkoutChoice choice;
  for (const WorkoutType& workout : type.extra->workoutTypes) {
    if (const auto* activity = std::get_if<Activity>(&workout.value)) {
      choice.activities.insert(*activity);
    }
  }
  return choice;
}

HKPredicate WorkoutChoice::predicate() const {
  std::vector<HKPredicate> parts;
  for (const Activity activity : activities) {
    parts.push_back(HKPredicate::workouts(std::string(rawValue(withoutLocation(activity)))));
  }
  return HKPredicate::any(std::move(parts));
}

namespace {

/// Absent where a workout does not say.
std::optional<OxHKWorkoutLocation> locationOf(const HKSample& sample) {
  const auto found = sample.metadata.find(HKMetadataKeyIndoorWorkout);
  if (found == sample.metadata.end()) return std::nullopt;
  std::optional<bool> isIndoor = found->second.boolean();
  if (const auto number = found->second.real()) isIndoor = *number != 0;
  if (const auto* text = found->second.text()) {
    if (*text == "1" || *text == "true") isIndoor = true;
    if (*text == "0" || *text == "false") isIndoor = false;
  }
  if (!isIndoor) return std::nullopt;
  return *isIndoor ? OxHKWorkoutLocation::indoor : OxHKWorkoutLocation::outdoor;
}

}  // namespace

bool WorkoutChoice::takes(const HKSample& sample) const {
  if (sample.workout() == nullptr) return false;
  if (takesAll) return true;
  return std::ranges::any_of(activities, [&](Activity activity) {
    const auto place = location(activity);
    return rawValue(withoutLocation(activity)) == sample.workout()->activityType &&
           (!place || place == locationOf(sample));
  });
}

double amountOfWorkouts(const std::vector<HKSample>& workouts, TypeUnit unit) {
  const auto text = healthKitUnit(unit);
  const auto in = text ? hkUnit(*text) : std::nullopt;
  const auto amount = [&](const std::optional<HKQuantity>& quantity) {
    return quantity && in ? quantity->doubleValueForUnit(*in).value_or(0) : 0;
  };
  double sum = 0;
  for (const HKSample& sample : workouts) {
    const HKWorkout& workout = *sample.workout();
    if (isDistance(unit)) {
      sum += amount(workout.totalDistance);
    } else if (isEnergy(unit)) {
      sum += amount(workout.totalEnergyBurned);
    } else {
      sum += convertFromTimeInterval(workout.duration, unit);
    }
  }
  return sum;
}

bool isChosenCompanionWorkout(const HKSample& sample, const AutomaticTaskType& type) {
  if (!type.extra || type.extra->workoutTypes.empty()) return true;
  const auto text = [&](std::string_view key) {
    const auto found = sample.metadata.find(key);
    const auto* value = found != sample.metadata.end() ? found->second.text() : nullptr;
    return value != nullptr ? *value : std::string();
  };
  return std::ranges::any_of(type.extra->workoutTypes, [&](const WorkoutType& workout) {
    const auto* own = std::get_if<VelloroWorkoutWorkoutType>(&workout.value);
    if (own == nullptr) return false;
    if (const auto* custom = std::get_if<UUID>(&own->id.value)) {
      return UUID::fromString(text(customWorkoutKey)) == *custom;
    }
    return text(workoutDifficultyKey) ==
           rawValue(std::get<VelloroWorkoutWorkoutType::System>(own->id.value));
  });
}

}  // namespace velloro
