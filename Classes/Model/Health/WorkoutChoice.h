#pragma once

#include "HealthKit/HKQuery.h"
#include "OxHealthKit/OxHKWorkoutActivityType.h"
#include "OxKit/Platform.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <set>
#include <vector>

namespace velloro {

// The keys by which the companion marks its workouts.
inline constexpr std::string_view workoutDifficultyKey = "VWMetadataKeyDifficultyLevel";
inline constexpr std::string_view customWorkoutKey = "VWMetadataKeyCustomWorkoutID";

/// The workouts that count for a task.
struct WorkoutChoice {
  bool takesAll = false;
  std::set<OxHKWorkoutActivityType> activities = {};

  [[nodiscard]] static WorkoutChoice of(const AutomaticTaskType& type);
  /// Those of the activities, wherever they were done.
  [[nodiscard]] HKPredicate predicate() const;
  /// An activity with a place takes only workouts that say the same place.
  [[nodiscard]] bool takes(const HKSample& sample) const;
};

/// Distances in a unit of distance, energy in one of energy, and durations in any other.
[[nodiscard]] double amountOfWorkouts(const std::vector<HKSample>& workouts, TypeUnit unit);

/// Whether a workout of the companion is one of those that the task names, or any where it names
/// none.
[[nodiscard]] bool isChosenCompanionWorkout(const HKSample& sample, const AutomaticTaskType& type);

}  // namespace velloro
