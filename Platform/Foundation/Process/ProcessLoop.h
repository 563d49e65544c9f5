#pragma once

#include "Foundation/Process/MainLoop.h"

namespace platform {

/// The process's main loop and its timer thread. A process has one of each, however many
/// `ProcessEnvironment`s there are; they are made on first use and never destroyed. The timer
/// thread starts with the first block scheduled.
[[nodiscard]] MainLoop& processMainLoop();
[[nodiscard]] TimedWork& processTimedWork();

/// The clock that `processTimedWork` uses, in seconds.
[[nodiscard]] double processMediaTime();

}  // namespace platform
