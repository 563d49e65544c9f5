#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro log`: writes, lists and removes entries of the log.
void addLogCommand(CLI::App& app);

}  // namespace velloro
