#pragma once

#include "Host/TimedTaskHost.h"

namespace velloro {

/// Shows a timer of this process running down: a line with a bar on a terminal, and a line for each
/// tenth elsewhere, or nothing. Returns whether it has ended, here or by another process; not, if
/// `loop.stop()` came before.
bool waitForTimer(const TimedTaskHost::Started& started, bool isShown);

}  // namespace velloro
