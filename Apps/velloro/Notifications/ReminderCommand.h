#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro reminder`: the reminders of a task, and what they say.
void addReminderCommand(CLI::App& app);

}  // namespace velloro
