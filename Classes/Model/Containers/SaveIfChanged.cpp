#include "Containers/SaveIfChanged.h"

#include "CoreData/Context/NSPersistentStoreCoordinator.h"
#include "OxLog/Log.h"

namespace velloro {

bool saveIfChanged(NSManagedObjectContext& context) {
  if (!context.hasChanges()) return false;
  const auto& coordinator = context.persistentStoreCoordinator();
  if (coordinator == nullptr || coordinator->persistentStores().empty()) {
    Log::database.error([] { return "No persistent stores"; });
    return false;
  }
  const auto saved = context.save();
  if (!saved) Log::database.error(saved.error());
  return saved.has_value();
}

bool performTransaction(NSManagedObjectContext& context,
                        const std::function<Result<void>()>& work) {
  const auto done = context.performTransaction(work);
  if (!done) Log::database.error(done.error());
  return done.has_value();
}

}  // namespace velloro
