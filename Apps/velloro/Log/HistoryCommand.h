#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro history`: tells what became of a task's periods.
void addHistoryCommand(CLI::App& app);

}  // namespace velloro
