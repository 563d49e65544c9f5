#pragma once

namespace velloro {

class Command;

/// `velloro remind`: one reminder of a task at an instant, as a voice assistant adds it.
void addRemindCommand(const Command& app);

}  // namespace velloro
