#pragma once

namespace velloro {

class Command;

/// Adds `velloro health`: samples are added, imported and listed, their sources put in order, and
/// read for a task.
void addHealthCommand(const Command& app);

}  // namespace velloro
