#pragma once

namespace velloro {

class Command;

/// `velloro status`: lists where tasks stand.
void addStatusCommand(const Command& app);

}  // namespace velloro
