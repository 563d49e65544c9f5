#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro log`: writes, lists and takes back what happened.
void addLogCommand(CLI::App& app);

}  // namespace velloro
