#pragma once

#include "CoreData/Context/NSPersistentCloudKitContainer.h"
#include "Foundation/Dispatch/NSNotificationCenter.h"
#include "OxKit/Platform.h"

#include <vector>

namespace velloro {

/// What every context of every process does about a conflict.
inline constexpr NSMergePolicy sharedMergePolicy = NSMergePolicy::mergeByPropertyObjectTrump;

/// A container whose background contexts have the shared merge policy when they are handed out;
/// `performBackgroundTask` hands out the same.
///
///     VelloroNSPersistentContainer container(velloroModelName, velloroModel());
///     container.performBackgroundTask([](NSManagedObjectContext& context) {
///       TaskEntity::create(context);
///       saveIfChanged(context);
///     });
class VelloroNSPersistentContainer : public NSPersistentContainer {
 public:
  using NSPersistentContainer::NSPersistentContainer;

  [[nodiscard]] std::shared_ptr<NSManagedObjectContext> newBackgroundContext() override;
};

/// The same for a store that may be mirrored.
class VelloroNSPersistentCloudKitContainer : public NSPersistentCloudKitContainer {
 public:
  using NSPersistentCloudKitContainer::NSPersistentCloudKitContainer;

  [[nodiscard]] std::shared_ptr<NSManagedObjectContext> newBackgroundContext() override;

  /// As `NSPersistentContainer::loadPersistentStores`, and remembers the error.
  void loadPersistentStores(const LoadHandler& handler) override;
  /// Why the store could not be opened; null if it was. For programs that can report it to a user.
  [[nodiscard]] const ErrorPtr& loadError() const { return loadError_; }

  /// Observers that end with the container.
  std::vector<NSNotificationCenter::Token> observers;

 private:
  ErrorPtr loadError_;
};

}  // namespace velloro
