#pragma once

namespace velloro {

class Command;

/// `velloro title`: a task's title as each surface shows it.
void addTitleCommand(const Command& app);

}  // namespace velloro
