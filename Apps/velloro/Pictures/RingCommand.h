#pragma once

namespace velloro {

class Command;

/// `velloro ring`: draws a task's ring to a PNG file.
void addRingCommand(const Command& app);

}  // namespace velloro
