#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro reminder`: what a reminder of a task says, and why.
void addReminderCommand(CLI::App& app);

}  // namespace velloro
