#pragma once

#include "Containers/SaveIfChanged.h"
#include "Containers/VelloroNSPersistentContainer.h"
#include "ExampleTests/SourcesExample.h"
#include "Settings/Settings.h"
#include "Settings/SettingsStorageLocal.h"
#include "Tasks/Requests/TaskFetchRequest.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/VelloroModel.h"
#include "Tasks/Status/StoredTaskStatus.h"
#include "UserNotifications/UNNotificationContentExtensionHost.h"
#include "UserNotifications/UNUserNotificationCenter.h"

namespace velloro {

/// A store in memory with a task, settings, and what a notification says of a task.
class ClassesExample : public SourcesExample {
 protected:
  ClassesExample() {
    container->setPersistentStoreDescriptions({NSPersistentStoreDescription::inMemory()});
    container->loadPersistentStores(
        [](const auto&, const ErrorPtr& error) { EXPECT_FALSE(error); });
  }

  const NotificationTask snapshot = SourcesExample::task;
  const std::shared_ptr<VelloroNSPersistentCloudKitContainer> container =
      std::make_shared<VelloroNSPersistentCloudKitContainer>(velloroModelName, velloroModel());
  const std::shared_ptr<NSManagedObjectContext> context = container->viewContext();
  const std::shared_ptr<TaskEntity> task = TaskEntity::create(*context);
  const std::shared_ptr<SettingsStorageContainer> localStorage =
      std::make_shared<SettingsStorageLocal>();
  SettingsStorage storage{{.localStorage = localStorage}, false};
  Settings settings{storage};
};

}  // namespace velloro
