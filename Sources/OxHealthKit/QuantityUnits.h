#pragma once

#include "OxHealthKit/OxHKSampleType.h"

#include <string_view>

namespace velloro {

/// The unit in which amounts of a type are usually given: "count" for steps, "kcal" for energy.
[[nodiscard]] std::string_view usualUnit(OxHKSampleType::QuantityType type);

/// Whether a unit, by its text, measures what the type is an amount of.
[[nodiscard]] bool measures(OxHKSampleType::QuantityType type, std::string_view unit);

}  // namespace velloro
