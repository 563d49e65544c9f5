#pragma once

namespace velloro {

class Command;

/// `velloro demo`: a store to try things with.
void addDemoCommand(const Command& app);

}  // namespace velloro
