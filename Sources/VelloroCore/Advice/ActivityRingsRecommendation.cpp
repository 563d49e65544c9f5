#include "HealthKit/HKSample.h"
#include "OxHealthKit/HKObjects.h"
#include "VelloroCore/Advice/ChangeDifficultyCalculator.h"

namespace velloro {

using Calculator = ChangeDifficultyCalculator;
using Source = ChangeDifficultySource::ExternalSource;

namespace {

struct Goal {
  Source source;
  double value;
  const char* unit;
};

std::optional<Goal> goalOf(const HKActivitySummary& summary, HealthType type) {
  switch (type) {
    case HealthType::burnActiveEnergy:
      return Goal{Source::activityMove, summary.activeEnergyBurnedGoal, "kcal"};
    case HealthType::exercise:
      return Goal{Source::activityExercise, summary.appleExerciseTimeGoal, nullptr};
    case HealthType::standHours:
      return Goal{Source::activityStand, summary.appleStandHoursGoal, nullptr};
    case HealthType::rollHours:
      return Goal{Source::activityRoll, summary.appleStandHoursGoal, nullptr};
    default:
      return std::nullopt;
  }
}

}  // namespace

const std::set<HealthType> Calculator::activityRingsRecommendationTypes = {
    HealthType::burnActiveEnergy, HealthType::exercise, HealthType::standHours,
    HealthType::rollHours};

std::optional<ChangeDifficultyRecommendation> Calculator::activityRingsRecommendation(
    const HKActivitySummary& summary, HealthType healthType, const TaskTarget& target) {
  auto goal = goalOf(summary, healthType);
  if (!goal || !(goal->value > 0)) return std::nullopt;
  if (goal->unit != nullptr) {
    const auto text = healthKitUnit(target.unit);
    const auto unit = text ? hkUnit(*text) : std::nullopt;
    const auto value =
        unit ? HKUnit::fromString(goal->unit)->convert(goal->value, *unit) : std::nullopt;
    if (!value) return std::nullopt;
    goal->value = *value;
  }
  if (goal->value == target.quantity) return std::nullopt;
  return ChangeDifficultyRecommendation{ChangeDifficultySource::external(goal->source),
                                        {ChangeDifficultyType::TypeQuantity{goal->value}}};
}

}  // namespace velloro
