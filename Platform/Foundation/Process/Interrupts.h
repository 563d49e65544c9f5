#pragma once

#include "Foundation/Dispatch/Block.h"

namespace platform {

/// Takes the wish that the process may end (SIGINT, as by Ctrl-C, and SIGTERM) as an event: `ask`
/// runs once, on a thread of its own, instead of the process being ended. A second wish ends it.
/// Call it while there is but one thread.
///
///     void runUntilInterrupted() {
///       onInterrupt([] { Environment::current().mainLoop().stop(); });
///       Environment::current().mainLoop().run();
///     }
void onInterrupt(Block ask);

}  // namespace platform
