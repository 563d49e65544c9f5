#pragma once

#include "VelloroCore/Frequency/TaskFrequencyPeriodType.h"
#include "VelloroCore/Types/HealthType.h"
#include "VelloroCore/Types/TypeUnit.h"
#include "VelloroCore/Types/ValueRange.h"

#include <optional>

namespace velloro {

/// The targets that a health type offers in a unit, per day, week, …:
///
///     const auto range = quantityOptions(HealthType::sleep, TypeUnit::durationHours);
///     range->last();            // 15: from 0.25 on
///     range->defaultValue();    // 8
///
/// Absent for a unit that the type does not offer, for no unit, and for a type or a period without
/// targets. A type that can be timed offers every unit of duration, and takes none for minutes.
[[nodiscard]] std::optional<ValueRange> quantityOptions(
    HealthType type, std::optional<TypeUnit> unit,
    TaskFrequencyPeriodType measurementDuration = TaskFrequencyPeriodType::day);

/// The durations that one chooses for what is timed, from a minute (5 seconds, when counted in
/// seconds) to 20 hours a day and more in longer periods; absent unless the unit is a duration.
[[nodiscard]] std::optional<ValueRange> optionsForTimedTasks(
    TypeUnit unit, TaskFrequencyPeriodType measurementDuration = TaskFrequencyPeriodType::day);

}  // namespace velloro
