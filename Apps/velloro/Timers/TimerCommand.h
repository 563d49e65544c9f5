#pragma once

namespace velloro {

class Command;

/// Adds `velloro timer`, which starts, stops and lists timers of tasks.
void addTimerCommand(const Command& app);

}  // namespace velloro
