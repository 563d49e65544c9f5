#include "CoreData/Context/NSPersistentCloudKitContainer.h"

namespace platform {
namespace {

NSPersistentCloudKitContainer::MirrorFactory& mirrorFactory() {
  static auto* factory = new NSPersistentCloudKitContainer::MirrorFactory;
  return *factory;
}

}  // namespace

NSPersistentCloudKitContainer::~NSPersistentCloudKitContainer() = default;

void NSPersistentCloudKitContainer::setMirrorFactory(MirrorFactory factory) {
  mirrorFactory() = std::move(factory);
}

void NSPersistentCloudKitContainer::loadPersistentStores(const LoadHandler& handler) {
  NSPersistentContainer::loadPersistentStores(
      [&](const NSPersistentStoreDescription& description, const ErrorPtr& error) {
        if (error == nullptr && description.cloudKitContainerOptions && mirrorFactory()) {
          mirror_ = mirrorFactory()(*this, *description.cloudKitContainerOptions);
        }
        handler(description, error);
      });
}

void NSPersistentCloudKitContainer::post(const NSPersistentCloudKitContainerEvent& event) {
  NSNotificationCenter::defaultCenter().post(
      {.name = NSPersistentCloudKitContainerEventChangedNotification,
       .object = this,
       .userInfo = {{NSPersistentCloudKitContainerEventUserInfoKey, event}}});
}

}  // namespace platform
