#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro next`: what to do next.
void addNextCommand(CLI::App& app);
/// `velloro advice`: what to make easier or harder.
void addAdviceCommand(CLI::App& app);

}  // namespace velloro
