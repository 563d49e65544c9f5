#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro demo`: a store to try things with.
void addDemoCommand(CLI::App& app);

}  // namespace velloro
