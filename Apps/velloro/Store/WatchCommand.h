#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro watch`: what other processes save, as it arrives.
void addWatchCommand(CLI::App& app);

}  // namespace velloro
