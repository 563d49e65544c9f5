#pragma once

#include "DataManager/DataManager.h"
#include "OxKit/Platform.h"

#include <cstddef>

namespace velloro {

/// What happened to the tasks when another store was chosen.
struct StoreSwitch {
  std::size_t copied = 0;  ///< Tasks that were copied from the former store to the chosen one.
  std::size_t found = 0;   ///< Tasks that the chosen store already had; nothing was copied then.
};

/// Chooses the store that the cloud mirrors, or the local one. If the chosen store has no tasks,
/// everything in the former one is copied to it; otherwise it stays as it is. Nothing is ever
/// deleted, since other devices may still use what the cloud has. Settings move along
/// (`SettingsStorage::changeTiers`). Meanwhile, no process writes tasks or begins background work.
///
/// On the main thread of the application. \throws HostError if it can't be done; the choice is then
/// undone. If that fails too, say on a full disk, the former store stays in use until
/// `finishChoosingStore`.
StoreSwitch chooseStore(DataManager& manager, bool isCloud);

/// Completes a choice that a killed process has left unfinished, with a new copy of the former
/// store. The application does so before it writes; an extension leaves it to the application. If
/// it can't be done, that is logged, and the former store stays in use.
void finishChoosingStore(DataManager& manager);

}  // namespace velloro
