#include "Containers/VelloroNSPersistentContainer.h"

namespace velloro {

std::shared_ptr<NSManagedObjectContext> VelloroNSPersistentContainer::newBackgroundContext() {
  auto context = NSPersistentContainer::newBackgroundContext();
  context->setMergePolicy(sharedMergePolicy);
  return context;
}

std::shared_ptr<NSManagedObjectContext>
VelloroNSPersistentCloudKitContainer::newBackgroundContext() {
  auto context = NSPersistentCloudKitContainer::newBackgroundContext();
  context->setMergePolicy(sharedMergePolicy);
  return context;
}

void VelloroNSPersistentCloudKitContainer::loadPersistentStores(const LoadHandler& handler) {
  NSPersistentCloudKitContainer::loadPersistentStores(
      [&](const NSPersistentStoreDescription& description, const ErrorPtr& error) {
        loadError_ = error;
        handler(description, error);
      });
}

}  // namespace velloro
