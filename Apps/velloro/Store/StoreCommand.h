#pragma once

namespace velloro {

class Command;

/// `velloro store check`, `stats` and `history`: what a store's file holds, and whether it is
/// sound. None of them makes or changes a file; so they work on a backup, and where nothing can be
/// written.
void addStoreCommand(const Command& app);

}  // namespace velloro
