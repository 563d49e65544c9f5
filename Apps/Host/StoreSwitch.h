#pragma once

#include "DataManager/DataManager.h"
#include "OxKit/Platform.h"

#include <cstddef>

namespace velloro {

/// What became of the tasks when another store was chosen.
struct StoreSwitch {
  std::size_t copied = 0;  ///< Tasks that the chosen store now has of the former one.
  std::size_t found = 0;   ///< Tasks that it had already; then nothing was copied.
};

/// Chooses the store that the cloud mirrors, or the local one. One without tasks is given a copy of
/// all that the former one holds; one that has some stays as it is. Nothing is ever deleted, since
/// other devices may still use what the cloud has. Settings go along
/// (`SettingsStorage::changeTiers`). Meanwhile no process writes tasks, nor begins background work.
///
/// On the main thread of the application. \throws HostError where it can't be done; the choice is
/// then as it was. Where not even that can be had, say on a full disk, the former store stays in
/// use until `finishChoosingStore`.
StoreSwitch chooseStore(DataManager& manager, bool isCloud);

/// Completes a choice that a killed process has left unfinished, with a new copy of what the former
/// store holds by now. The application does so before it writes; an extension leaves it to the
/// application. Where it can't be done, that is logged, and the former store stays in use.
void finishChoosingStore(DataManager& manager);

}  // namespace velloro
