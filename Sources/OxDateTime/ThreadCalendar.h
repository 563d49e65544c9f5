#pragma once

#include "Foundation/Time/Calendar.h"
#include "OxKit/Platform.h"

namespace velloro {

/// This thread's own calendar, set to the given zone. The next call on the same thread sets it
/// anew, so use it at once and do not keep it.
[[nodiscard]] Calendar& currentThreadCalendar(TimeZone timeZone);

}  // namespace velloro
