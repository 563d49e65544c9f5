#pragma once

#include "VelloroCore/Titles/HealthTitleKey.h"
#include "VelloroCore/Titles/TaskDisplayTitle.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <optional>
#include <set>
#include <string>

namespace velloro {

/// What the title of a task of a health type is made of.
struct HealthTitleSource {
  /// The user's own text; an empty one counts as none.
  std::optional<std::string> customTitle = {};
  TaskTarget target = {};
  std::optional<TypeExtra> extra = {};
  HealthTitleForm form = {};
};

/// A separate text for a custom title, else the type's word with the amount, as titles of the list
/// of predefined tasks are. Types whose tasks always have a title of their own have no word.
///
///     displayTitleForQuantity(HealthType::dietarySugar,
///                             {.target = {40, TypeUnit::grams}, .form = {.isNegative = true}},
///                             locale);
///         // integrated: the text of "DietarySugarLess", and 40 g
[[nodiscard]] DisplayTitleType displayTitleForQuantity(HealthType type,
                                                       const HealthTitleSource& source,
                                                       const Locale& locale);

/// The workouts by name, or the name of the predefined task where any workout counts.
///
///     displayTitleForWorkouts({WorkoutType::healthKit(OxHKWorkoutActivityType::yoga),
///                              WorkoutType::healthKit(OxHKWorkoutActivityType::golf)},
///                             locale).localizedPrimary;
///         // "Golf and Yoga"
[[nodiscard]] TaskDisplayTitle displayTitleForWorkouts(const std::set<WorkoutType>& workouts,
                                                       const Locale& locale);

// Of an automatic type with another amount than its own, in its unit. Absent without a unit.

[[nodiscard]] std::optional<TaskDisplayTitle::Quantity> displayTitleQuantity(
    const AutomaticTaskType& type, double quantity);

/// What `displayTitleForTargetQuantity` takes beside the type.
struct TargetTitleSource {
  std::optional<std::string> customTitle = {};  ///< An empty one counts as none.
  double quantity = 0;
  HealthTitleForm form = {};
};

/// A health type's title as above; for the timer and screen time the custom title and the amount.
[[nodiscard]] std::optional<TaskDisplayTitle> displayTitleForTargetQuantity(
    const AutomaticTaskType& type, const TargetTitleSource& source, const Locale& locale);

/// The bare number, "8" for 8 cups; of an energy deficit always with its sign.
[[nodiscard]] std::optional<std::string> formattedQuantityNumber(const AutomaticTaskType& type,
                                                                 double quantity,
                                                                 const Locale& locale);

}  // namespace velloro
