#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro period`: the period of a task that a day lies in.
void addPeriodCommand(CLI::App& app);

}  // namespace velloro
