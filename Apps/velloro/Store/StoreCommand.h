#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro store check`, `stats` and `history`: what a store's file holds, and whether it is
/// sound. None of them makes or changes a file; so they work on a backup, and where nothing can be
/// written.
void addStoreCommand(CLI::App& app);

}  // namespace velloro
