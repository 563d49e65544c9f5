#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro types`: what the automatic types offer.
void addTypesCommand(CLI::App& app);

}  // namespace velloro
