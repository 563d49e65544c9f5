#include "Tasks/VelloroModel.h"

#include "Settings/SettingEntity.h"
#include "Tasks/HealthKitRequestEntity.h"
#include "Tasks/TaskCategoryEntity.h"
#include "Tasks/TaskCloudSummaryValueTransformer.h"
#include "Tasks/TaskCounterEntity.h"
#include "Tasks/TaskEntity.h"
#include "Tasks/TaskLogEntryEntity.h"
#include "Tasks/TaskNoteEntity.h"
#include "Tasks/TaskNotificationRemindersEntity.h"
#include "Tasks/TaskNotificationSettingsEntity.h"
#include "Tasks/TaskShareEntity.h"
#include "Tasks/TaskShareOwnerEntity.h"
#include "Tasks/TaskTemporalDataEntity.h"
#include "Tasks/TaskTimerEntity.h"
#include "Tasks/UserProfileEntity.h"

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
