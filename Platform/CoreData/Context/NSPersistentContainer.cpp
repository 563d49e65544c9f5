#include "CoreData/Context/NSPersistentContainer.h"

namespace platform {

using ConcurrencyType = NSManagedObjectContext::ConcurrencyType;

NSPersistentContainer::NSPersistentContainer(std::string name, const NSManagedObjectModel& model)
    : name_(std::move(name)),
      coordinator_(std::make_shared<NSPersistentStoreCoordinator>(model)),
      viewContext_(NSManagedObjectContext::make(coordinator_, ConcurrencyType::mainQueue)) {}

NSPersistentContainer::~NSPersistentContainer() = default;

void NSPersistentContainer::loadPersistentStores(const LoadHandler& handler) {
  for (const NSPersistentStoreDescription& description : descriptions_) {
    const auto opened = coordinator_->addPersistentStore(description);
    handler(description, opened ? nullptr : opened.error());
  }
}

std::shared_ptr<NSManagedObjectContext> NSPersistentContainer::newBackgroundContext() {
  return NSManagedObjectContext::make(coordinator_, ConcurrencyType::privateQueue);
}

void NSPersistentContainer::performBackgroundTask(BackgroundTask task) {
  const auto context = newBackgroundContext();
  context->perform([context, task = std::move(task)]() mutable { task(*context); });
}

}  // namespace platform
