#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro icons`: the program's own icons.
void addIconsCommand(CLI::App& app);

}  // namespace velloro
