#pragma once

#include "Foundation/Time/Date.h"
#include "OxKit/Platform.h"

namespace velloro {

/// Reads all tasks that health data can complete, back to the oldest sample that came in or went
/// since this was last done. Nothing happens where none did.
/// \throws HostError
void readChangedHealth(Date now);

}  // namespace velloro
