#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro title`: a task's title as each surface shows it.
void addTitleCommand(CLI::App& app);

}  // namespace velloro
