#include "velloro/Store/UnreadableRows.h"

#include "Tasks/Columns/StoredAutomaticTaskType.h"
#include "Tasks/Columns/StoredValues.h"
#include "Tasks/Rows/TaskCategoryEntity.h"
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
#include "VelloroBackup/VelloroJSONBackupTaskExtra.h"

namespace velloro {
namespace {

using Columns = TaskAttributes;
using Reminders = TaskNotificationRemindersEntity;
using Notifications = TaskNotificationSettingsEntity;

/// What must be able to make out an attribute of an entity where there is something in it.
struct Form {
  const NSEntityDescription* entity;
  std::size_t slot;
  bool (*canRead)(const NSManagedObject&);
};

template <typename T>
const T& as(const NSManagedObject& object) {
  return static_cast<const T&>(object);
}
template <typename T, auto Accessor>
bool has(const NSManagedObject& object) {
  return (as<T>(object).*Accessor)().has_value();
}
template <const auto& Attribute, typename E>
bool isCase(const NSManagedObject& object) {
  return fromRawValue<E>(*object.text(Attribute)).has_value();
}
template <const auto& Attribute>
bool isZone(const NSManagedObject& object) {
  return storedTimeZone(object.text(Attribute)).has_value();
}
template <const auto& Attribute>
bool isID(const NSManagedObject& object) {
  return storedUniqueID(object.text(Attribute)).has_value();
}

/// Where an icon's column is JSON, nothing in it must be left out.
template <typename T, const auto& Attribute>
bool isIcon(const NSManagedObject& object) {
  const std::string* text = object.text(Attribute);
  return has<T, &T::displayRepresentation>(object) &&
         (!text->starts_with('{') ||
          storedJSON<IconDisplayRepresentation::CoreDataRepresentation>(text, {}, true));
}

template <const auto& Attribute>
bool areDays(const NSManagedObject& object) {
  return Reminders::canReadDayIndexes(*object.text(Attribute));
}

StoredAutomaticTaskType storedType(const NSManagedObject& row) {
  return {.typeName = row.value(Columns::typeName),
          .typeTarget = row.value(Columns::typeTarget),
          .typeUnit = row.value(Columns::typeUnit),
          .typeSpeed = row.value(Columns::typeSpeed)};
}

const std::vector<Form>& forms() {
  const auto form = [](const NSEntityDescription& entity, const auto& attribute,
                       bool (*canRead)(const NSManagedObject&)) {
    return Form{&entity, attribute.slot(), canRead};
  };
  const auto& task = Columns::description;
  const auto& entry = TaskLogEntryEntity::description;
  const auto& note = TaskNoteEntity::description;
  const auto& reminder = Reminders::description;
  const auto& settings = Notifications::description;
  const auto& share = TaskShareEntity::description;
  const auto& category = TaskCategoryEntity::description;
  const auto& profile = UserProfileEntity::description;
  const auto& temporal = TaskTemporalDataEntity::description;
  const auto& timer = TaskTimerEntity::description;
  static const std::vector<Form> all{
      form(task, Columns::uniqueId, has<TaskEntity, &TaskEntity::taskUniqueId>),
      form(task, Columns::status, isCase<Columns::status, TaskStatus>),
      form(task, Columns::createdTimeZone, isZone<Columns::createdTimeZone>),
      form(task, Columns::currentTimeZoneOverride, isZone<Columns::currentTimeZoneOverride>),
      form(task, Columns::imageName, isIcon<TaskEntity, Columns::imageName>),
      form(task, Columns::colorInfo, has<TaskEntity, &TaskEntity::taskColor>),
      form(task, Columns::typeName,
           [](const NSManagedObject& row) {
             return storedType(row).canReadName() && as<TaskEntity>(row).automaticTaskType();
           }),
      form(task, Columns::typeUnit,
           [](const NSManagedObject& row) { return storedType(row).canReadUnit(); }),
      form(task, Columns::typeSpeed,
           [](const NSManagedObject& row) { return storedType(row).canReadSpeed(); }),
      form(task, Columns::daysMode,
           [](const NSManagedObject& row) {
             return fromRawValue<DayMode>(row.value(Columns::daysMode)).has_value();
           }),
      form(task, Columns::customReminderType,
           [](const NSManagedObject& row) {
             return storedJSON<VelloroJSONBackupTaskExtra>(row.text(Columns::customReminderType),
                                                           DateForm::iso8601, true)
                 .has_value();
           }),
      form(task, Columns::lastChangedDifficultyTimeZone,
           isZone<Columns::lastChangedDifficultyTimeZone>),
      form(temporal, TaskTemporalDataEntity::lastChangedDifficultyTimeZone,
           isZone<TaskTemporalDataEntity::lastChangedDifficultyTimeZone>),
      form(entry, TaskLogEntryEntity::uniqueId,
           has<TaskLogEntryEntity, &TaskLogEntryEntity::entryUniqueId>),
      form(entry, TaskLogEntryEntity::entryType,
           has<TaskLogEntryEntity, &TaskLogEntryEntity::logEntryType>),
      form(entry, TaskLogEntryEntity::entryDate,
           [](const NSManagedObject& row) {
             return storedDay(row.value(TaskLogEntryEntity::entryDate)).has_value();
           }),
      form(entry, TaskLogEntryEntity::entryPeriodType,
           has<TaskLogEntryEntity, &TaskLogEntryEntity::period>),
      form(entry, TaskLogEntryEntity::cloudStatus,
           [](const NSManagedObject& row) {
             return *row.text(TaskLogEntryEntity::cloudStatus) ==
                    TaskLogEntryEntity::temporaryRecordIdentifier;
           }),
      form(entry, TaskLogEntryEntity::createdTimeZone, isZone<TaskLogEntryEntity::createdTimeZone>),
      form(note, TaskNoteEntity::uniqueId, has<TaskNoteEntity, &TaskNoteEntity::noteUniqueId>),
      form(note, TaskNoteEntity::status, has<TaskNoteEntity, &TaskNoteEntity::noteStatus>),
      form(note, TaskNoteEntity::createdTimeZone, isZone<TaskNoteEntity::createdTimeZone>),
      form(reminder, Reminders::uniqueId, isID<Reminders::uniqueId>),
      // A known trigger that lacks what it needs takes the reminder along.
      form(reminder, Reminders::reminderType,
           [](const NSManagedObject& row) {
             return isCase<Reminders::reminderType, TaskReminder::TriggerType>(row) &&
                    as<Reminders>(row).reminder();
           }),
      form(reminder, Reminders::region,
           [](const NSManagedObject& row) {
             return storedJSON<TriggerRegion>(row.value(Reminders::region), true).has_value();
           }),
      form(reminder, Reminders::daysFromStart, areDays<Reminders::daysFromStart>),
      form(reminder, Reminders::daysFromFinish, areDays<Reminders::daysFromFinish>),
      form(reminder, Reminders::sound, isCase<Reminders::sound, SoundEffect>),
      form(reminder, Reminders::timeZone, isCase<Reminders::timeZone, NotificationTimeZone>),
      form(reminder, Reminders::snoozeTimeZone,
           isCase<Reminders::snoozeTimeZone, NotificationTimeZone>),
      form(settings, Notifications::reminderType,
           isCase<Notifications::reminderType, ReminderType>),
      form(settings, Notifications::badgeMode, isCase<Notifications::badgeMode, BadgeMode>),
      form(settings, Notifications::badgeTimeZone,
           isCase<Notifications::badgeTimeZone, NotificationTimeZone>),
      form(settings, Notifications::soundCompletion,
           isCase<Notifications::soundCompletion, SoundEffect>),
      form(settings, Notifications::soundPartialCompletion,
           isCase<Notifications::soundPartialCompletion, SoundEffect>),
      form(settings, Notifications::soundReminder,
           isCase<Notifications::soundReminder, SoundEffect>),
      form(settings, Notifications::soundTimerNotification,
           isCase<Notifications::soundTimerNotification, SoundEffect>),
      form(settings, Notifications::liveActivityDisplayMode,
           isCase<Notifications::liveActivityDisplayMode, LiveActivityDisplayMode>),
      form(share, TaskShareEntity::status, has<TaskShareEntity, &TaskShareEntity::shareStatus>),
      form(share, TaskShareEntity::participantsJson,
           [](const NSManagedObject& row) {
             return storedJSON<std::vector<SharedTaskParticipant>>(
                        row.value(TaskShareEntity::participantsJson), true)
                 .has_value();
           }),
      form(share, TaskShareEntity::summaryJson, has<TaskShareEntity, &TaskShareEntity::summary>),
      form(category, TaskCategoryEntity::uniqueId, isID<TaskCategoryEntity::uniqueId>),
      form(category, TaskCategoryEntity::iconName,
           isIcon<TaskCategoryEntity, TaskCategoryEntity::iconName>),
      form(category, TaskCategoryEntity::colorInfo,
           has<TaskCategoryEntity, &TaskCategoryEntity::color>),
      form(profile, UserProfileEntity::uniqueId, isID<UserProfileEntity::uniqueId>),
      form(profile, UserProfileEntity::iconName,
           isIcon<UserProfileEntity, UserProfileEntity::iconName>),
      form(timer, TaskTimerEntity::entryId, isID<TaskTimerEntity::entryId>),
      form(timer, TaskTimerEntity::entryPeriodType,
           isCase<TaskTimerEntity::entryPeriodType, TaskFrequencyPeriodType>),
      form(TaskShareOwnerEntity::description, TaskShareOwnerEntity::imageName,
           isIcon<TaskShareOwnerEntity, TaskShareOwnerEntity::imageName>),
  };
  return all;
}

/// An empty text stands for none.
bool isEmpty(const PropertyValue& value) {
  const auto* text = std::get_if<std::string>(&value);
  return isNull(value) || (text != nullptr && text->empty());
}

}  // namespace

Result<std::vector<std::string>> unreadableRows(NSManagedObjectContext& context) {
  std::vector<std::string> findings;
  NSManagedObject::Objects objects;
  const NSEntityDescription* entity = nullptr;
  for (const Form& form : forms()) {
    if (std::exchange(entity, form.entity) != form.entity) {
      auto fetched = context.fetch(NSFetchRequest(entity->name()));
      if (!fetched) return std::unexpected(fetched.error());
      objects = *std::move(fetched);
    }
    for (const auto& object : objects) {
      if (isEmpty(object->slotValue(form.slot)) || form.canRead(*object)) continue;
      findings.push_back("can't be read: " + entity->name() + " " +
                         std::to_string(object->objectID().key) + " " +
                         entity->attributes()[form.slot].name);
    }
  }
  return findings;
}

}  // namespace velloro
