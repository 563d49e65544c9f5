#pragma once

#include "Foundation/Dispatch/Block.h"

namespace platform {

/// Handles the first request to end the process (SIGINT, as by Ctrl-C, or SIGTERM): `ask` runs
/// once, on a thread of its own, and the process continues. A second request ends it. To be called
/// while the process has one thread.
///
///     void runUntilInterrupted() {
///       onInterrupt([] { Environment::current().mainLoop().stop(); });
///       Environment::current().mainLoop().run();
///     }
void onInterrupt(Block ask);

}  // namespace platform
