#pragma once

#include "Foundation/Time/Calendar.h"
#include "OxKit/Platform.h"

#include <optional>

namespace velloro {

/// This thread's own calendar, set to the given zone, or to the device's current one when that is
/// absent. The next call on the same thread sets it anew, so use it at once and do not keep it.
[[nodiscard]] Calendar& currentThreadCalendar(std::optional<TimeZone> timeZone = {});

}  // namespace velloro
