#pragma once

#include "CoreData/Context/NSManagedObjectContext.h"
#include "OxKit/Platform.h"

#include <functional>

namespace velloro {

/// Saves what the context has changed, as all who write do. Whether a save took place: not without
/// changes, and not when it fails; then the error is logged and the context keeps its changes. On
/// the context's queue.
bool saveIfChanged(NSManagedObjectContext& context);

/// The same for what is derived from what is read: `work` reads and changes, and it is saved with
/// what it has read still true (`NSManagedObjectContext::performTransaction`). Whether that went
/// well; when it didn't, the error is logged and nothing is changed.
bool performTransaction(NSManagedObjectContext& context, const std::function<Result<void>()>& work);

}  // namespace velloro
