#pragma once

#include "Foundation/Time/Calendar.h"
#include "OxKit/Platform.h"

namespace velloro {

/// This thread's own calendar, set to the given zone. The next call on the same thread changes it,
/// so use it immediately and do not keep it.
[[nodiscard]] Calendar& currentThreadCalendar(TimeZone timeZone);

}  // namespace velloro
