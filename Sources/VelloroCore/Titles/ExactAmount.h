#pragma once

#include "Foundation/Text/Locale.h"
#include "VelloroCore/Types/TypeUnit.h"

#include <optional>
#include <string>

namespace velloro {

/// An amount with its unit as it stands inside a line, with three decimal places at most. The texts
/// of `TaskDisplayTitle::Quantity` round to the step of the unit instead, and some begin with
/// capitals. Absent for a time of day that does not exist and for what is no duration.
///
///     exactAmount(0.4, TypeUnit::cupsUS, locale);           // "0.4 cups"
///     exactAmount(7.5, TypeUnit::durationHours, locale);    // "7 hr, 30 min"
///     exactAmount(0.5, TypeUnit::durationSeconds, locale);  // "0.5 sec"
[[nodiscard]] std::optional<std::string> exactAmount(double amount, TypeUnit unit,
                                                     const Locale& locale);

}  // namespace velloro
