#pragma once

namespace velloro {

class Command;

/// `velloro history`: shows the past periods of a task.
void addHistoryCommand(const Command& app);

}  // namespace velloro
