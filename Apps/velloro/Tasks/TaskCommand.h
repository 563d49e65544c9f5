#pragma once

namespace velloro {

class Command;

/// `velloro task`: keeps the tasks of the store.
void addTaskCommand(const Command& app);

}  // namespace velloro
