#pragma once

#include "VelloroCore/Types/HealthType.h"
#include "VelloroCore/Types/TaskTarget.h"

#include <optional>
#include <string>
#include <string_view>

namespace velloro {

/// Which form of a health type's word is wanted.
struct HealthTitleForm {
  bool isNegative = false;         ///< For a task of staying below the target.
  bool includeLineBreaks = false;  ///< Takes the form with line breaks, where there is one.
};

/// The key of a health type's word in the string tables, to be shown beside an amount. Absent where
/// there is no word for the type, or none for it in that unit.
///
///     titleKey(HealthType::runOrWalk, {.unit = TypeUnit::distanceKm});   // "distance.km"
///     titleKey(HealthType::standMinutes, {.unit = TypeUnit::durationMinutes},
///              {.includeLineBreaks = true});                      // "standing.minutes.breaks"
///     titleKey(HealthType::dietaryEnergy, {.unit = TypeUnit::calories},
///              {.isNegative = true});                             // "kcal.dietary.under"
///     titleKey(HealthType::dietarySugar, {.unit = TypeUnit::grams});     // "DietarySugarMore"
///     titleKey(HealthType::energyDeficit,
///              {.quantity = -500, .unit = TypeUnit::calories, .speeds = {TypeSpeed::lessThan}});
///         // "EnergyDeficit.LessThan.Long"; ".Zero" where the quantity is 0
///
///     titleKey(HealthType::bedtime,
///              {.unit = TypeUnit::timeOfDay, .speeds = {TypeSpeed::asleepBefore}});
///         // "speed.asleep_before"; `noSpeedKey` without a speed
///
/// A unit's word in a key is its raw value.
[[nodiscard]] std::optional<std::string> titleKey(HealthType type, const TaskTarget& target,
                                                  HealthTitleForm form = {});

/// The key of a type's name in the list of predefined tasks; absent for a type without a name of
/// its own there.
[[nodiscard]] std::optional<std::string_view> predefinedTitleKey(HealthType type);

}  // namespace velloro
