#include "VelloroCore/Titles/HealthTitle.h"

#include "OxKit/Localization.h"
#include "VelloroCore/Titles/FormatManager.h"

#include <variant>
#include <vector>

namespace velloro {
namespace {

bool isGiven(const std::optional<std::string>& title) {
  return title && !title->empty();
}

std::string workoutNames(const std::set<WorkoutType>& workouts, const Locale& locale) {
  std::set<OxHKWorkoutActivityType> activities;
  std::vector<std::string> companions;
  for (const WorkoutType& workout : workouts) {
    if (const auto* activity = std::get_if<OxHKWorkoutActivityType>(&workout.value)) {
      activities.insert(*activity);
    } else {
      companions.push_back(std::get<VelloroWorkoutWorkoutType>(workout.value).title);
    }
  }
  std::vector<std::string> names;
  for (const OxHKWorkoutActivityType activity : minimalWorkoutTypeList(std::move(activities))) {
    names.push_back(localized(titleKey(activity)));
  }
  names.insert(names.end(), companions.begin(), companions.end());
  return FormatManager::shared(locale).listFormatter.string(names);
}

std::optional<std::string> word(HealthType type, const HealthTitleSource& source,
                                const Locale& locale) {
  if (const auto key = titleKey(type, source.target, source.form)) return localized(*key);
  if (type != HealthType::workout) return std::nullopt;
  return displayTitleForWorkouts(source.extra.value_or(TypeExtra{}).workoutTypes, locale)
      .localizedPrimary;
}

}  // namespace

DisplayTitleType displayTitleForQuantity(HealthType type, const HealthTitleSource& source,
                                         const Locale& locale) {
  if (isGiven(source.customTitle)) return DisplayTitleType::separate(*source.customTitle);
  return DisplayTitleType::integrated(
      {.localizedPrimary = word(type, source, locale),
       .quantity = TaskDisplayTitle::Quantity{.type = type, .quantity = source.target}});
}

TaskDisplayTitle displayTitleForWorkouts(const std::set<WorkoutType>& workouts,
                                         const Locale& locale) {
  if (!workouts.empty()) return {.localizedPrimary = workoutNames(workouts, locale)};
  return {.localizedPrimary = localized(*predefinedTitleKey(HealthType::workout))};
}

std::optional<TaskDisplayTitle::Quantity> displayTitleQuantity(const AutomaticTaskType& type,
                                                               double quantity) {
  auto target = type.taskTarget();
  if (!target) return std::nullopt;
  target->quantity = quantity;
  return TaskDisplayTitle::Quantity{.type = type.type.healthType(), .quantity = *target};
}

std::optional<TaskDisplayTitle> displayTitleForTargetQuantity(const AutomaticTaskType& type,
                                                              const TargetTitleSource& source,
                                                              const Locale& locale) {
  const auto quantity = displayTitleQuantity(type, source.quantity);
  if (!quantity) return std::nullopt;
  if (!quantity->type) {
    TaskDisplayTitle title{.quantity = quantity};
    if (isGiven(source.customTitle)) title.localizedPrimary = source.customTitle;
    return title;
  }
  return displayTitleForQuantity(*quantity->type,
                                 {.customTitle = source.customTitle,
                                  .target = quantity->quantity,
                                  .extra = type.extra,
                                  .form = source.form},
                                 locale)
      .title(*quantity);
}

std::optional<std::string> formattedQuantityNumber(const AutomaticTaskType& type, double quantity,
                                                   const Locale& locale) {
  const auto amount = displayTitleQuantity(type, quantity);
  if (!amount) return std::nullopt;
  if (amount->type == HealthType::energyDeficit) {
    return FormatManager::shared(locale).integerDeficitFormatter.string(quantity);
  }
  return amount->localizedFormatted(TaskDisplayTitle::Context::appleWatchComplicationNumerator,
                                    locale);
}

}  // namespace velloro
