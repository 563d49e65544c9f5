#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro themes`: the colour schemes and what a ring looks like in them.
void addThemesCommand(CLI::App& app);

}  // namespace velloro
