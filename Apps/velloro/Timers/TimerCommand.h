#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// Adds `velloro timer`, which starts, stops and lists timers of tasks.
void addTimerCommand(CLI::App& app);

}  // namespace velloro
