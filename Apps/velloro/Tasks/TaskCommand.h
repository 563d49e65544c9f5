#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro task`: keeps the tasks of the store.
void addTaskCommand(CLI::App& app);

}  // namespace velloro
