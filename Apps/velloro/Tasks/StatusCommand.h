#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro status`: lists where tasks stand.
void addStatusCommand(CLI::App& app);

}  // namespace velloro
