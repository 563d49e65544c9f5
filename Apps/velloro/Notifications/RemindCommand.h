#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro remind`: one reminder of a task at an instant, as a voice assistant adds it.
void addRemindCommand(CLI::App& app);

}  // namespace velloro
