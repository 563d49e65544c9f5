#pragma once

#include "CoreData/NSManagedObjectContext.h"
#include "OxKit/Platform.h"

namespace velloro {

/// Saves what the context has changed, as all who write do. Whether a save took place: not without
/// changes, and not when it fails; then the error is logged and the context keeps its changes. On
/// the context's queue.
bool saveIfChanged(NSManagedObjectContext& context);

}  // namespace velloro
