#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro settings`: what is set, and in which tier.
void addSettingsCommand(CLI::App& app);

}  // namespace velloro
