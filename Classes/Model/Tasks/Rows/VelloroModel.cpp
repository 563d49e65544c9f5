#include "Tasks/Rows/VelloroModel.h"

#include "Settings/SettingEntity.h"
#include "Tasks/Columns/TaskCloudSummaryValueTransformer.h"
#include "Tasks/Rows/HealthKitRequestEntity.h"
#include "Tasks/Rows/TaskCategoryEntity.h"
#include "Tasks/Rows/TaskCounterEntity.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/TaskNoteEntity.h"
#include "Tasks/Rows/TaskNotificationRemindersEntity.h"
#include "Tasks/Rows/TaskNotificationSettingsEntity.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "Tasks/Rows/TaskShareOwnerEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"
#include "Tasks/Rows/TaskTimerEntity.h"
#include "Tasks/Rows/UserProfileEntity.h"

namespace velloro {

const NSManagedObjectModel& velloroModel() {
  // Never destroyed: blocks of background queues may use it up to the last moment.
  static const auto& model = [] -> const NSManagedObjectModel& {
    TaskCloudSummaryValueTransformer::registerUnderItsName();
    return *new NSManagedObjectModel(
        {&TaskAttributes::description, &TaskLogEntryEntity::description,
         &TaskNoteEntity::description, &TaskCategoryEntity::description,
         &TaskCounterEntity::description, &TaskTemporalDataEntity::description,
         &TaskTimerEntity::description, &TaskNotificationSettingsEntity::description,
         &TaskNotificationRemindersEntity::description, &TaskShareEntity::description,
         &TaskShareOwnerEntity::description, &UserProfileEntity::description,
         &SettingEntity::description, &HealthKitRequestEntity::description});
  }();
  return model;
}

}  // namespace velloro
