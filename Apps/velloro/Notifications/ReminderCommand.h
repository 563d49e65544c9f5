#pragma once

namespace velloro {

class Command;

/// `velloro reminder`: the reminders of a task, and what they say.
void addReminderCommand(const Command& app);

}  // namespace velloro
