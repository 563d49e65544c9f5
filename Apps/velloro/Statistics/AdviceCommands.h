#pragma once

namespace velloro {

class Command;

/// `velloro next`: what to do next.
void addNextCommand(const Command& app);
/// `velloro advice`: what to make easier or harder.
void addAdviceCommand(const Command& app);

}  // namespace velloro
