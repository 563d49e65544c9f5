#pragma once

#include "Foundation/Time/TimeZone.h"
#include "OxDateTime/DayOfWeek.h"
#include "OxKit/Platform.h"

namespace platform {
class Decoder;
}

namespace velloro {

// What stands in for a value of a record of which nothing is known; see `whenUnknown`.

/// The first day of the week in the locale of the device that reads.
[[nodiscard]] DayOfWeek firstDayOfWeekStandIn(const Decoder& from);
/// The zone of the device that reads.
[[nodiscard]] TimeZone timeZoneStandIn(const Decoder& from);

}  // namespace velloro
