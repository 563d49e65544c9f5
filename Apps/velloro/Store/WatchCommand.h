#pragma once

namespace velloro {

class Command;

/// `velloro watch`: what other processes save, as it arrives.
void addWatchCommand(const Command& app);

}  // namespace velloro
