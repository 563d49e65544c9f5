#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro ring`: draws a task's ring to a PNG file.
void addRingCommand(CLI::App& app);

}  // namespace velloro
