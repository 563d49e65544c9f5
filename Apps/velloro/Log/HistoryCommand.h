#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro history`: shows the past periods of a task.
void addHistoryCommand(CLI::App& app);

}  // namespace velloro
