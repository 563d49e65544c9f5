#pragma once

namespace CLI {
class App;
}

namespace velloro {

/// `velloro store check`, `stats` and `history`: what a store's file holds, and whether it is
/// sound. None of them changes a row.
void addStoreCommand(CLI::App& app);

}  // namespace velloro
