#pragma once

#include "CoreData/Fetch/KeyPath.h"
#include "Foundation/Time/Date.h"
#include "OxDateTime/DayOfWeek.h"
#include "OxKit/Platform.h"
#include "Tasks/Columns/StoredForms.h"
#include "VelloroCore/Frequency/DayMode.h"
#include "VelloroCore/Status/TaskStatus.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace velloro {

class TaskCategoryEntity;
class TaskCounterEntity;
class TaskEntity;
class TaskLogEntryEntity;
class TaskNoteEntity;
class TaskNotificationRemindersEntity;
class TaskNotificationSettingsEntity;
class TaskShareEntity;
class TaskTemporalDataEntity;
class TaskTimerEntity;
class UserProfileEntity;

/// What the row of a task holds, by column. How a type stands in its column is said in
/// `Columns/StoredForms.h`; those forms are of files that others wrote, and never change. The
/// columns stand apart from `TaskEntity` since its functions have some of the same names.
///
///     task->setValue(TaskAttributes::status, TaskStatus::paused);
///     task->stored(TaskAttributes::status);    // "P"
struct TaskAttributes : platform::DeclaredBy<TaskEntity> {
  using Text = std::optional<std::string>;

  [[nodiscard]] static std::shared_ptr<platform::NSManagedObject> makeObject();
  inline static platform::NSEntityDescription description{
      std::string(platform::entityName<TaskEntity>()), &makeObject};

  inline static const Attribute<std::optional<UniqueID>> uniqueId{description, "uniqueId"};
  inline static const Attribute<Text> title{description, "title"};
  inline static const Attribute<std::optional<TaskStatus>> status{description, "status"};
  /// When `status` last changed.
  inline static const Attribute<std::optional<Date>> statusDate{description, "statusDate"};
  inline static const Attribute<std::optional<Date>> created{description, "created"};
  inline static const Attribute<std::optional<TimeZone>> createdTimeZone{description,
                                                                         "createdTimeZone"};
  /// The zone that the task is pinned to; absent for the device's.
  inline static const Attribute<std::optional<TimeZone>> currentTimeZoneOverride{
      description, "currentTimeZoneOverride"};
  inline static const Attribute<std::optional<OxCodableColor>> colorInfo{description, "colorInfo"};
  inline static const Attribute<std::optional<IconDisplayRepresentation>> imageName{description,
                                                                                    "imageName"};
  inline static const Attribute<std::int16_t> displayOrder{description, "displayOrder"};

  // The automatic type; see `StoredAutomaticTaskType`.
  inline static const Attribute<Text> typeName{description, "typeName"};
  inline static const Attribute<double> typeTarget{description, "typeTarget"};
  inline static const Attribute<Text> typeUnit{description, "typeUnit"};
  inline static const Attribute<Text> typeSpeed{description, "typeSpeed"};

  // The frequency. A new task is due every day.
  inline static const Attribute<std::optional<DayMode>> daysMode{description, "daysMode"};
  inline static const Attribute<std::optional<DaysOfWeek>> daysOfWeek{description, "daysOfWeek",
                                                                      DaysOfWeek::everyDay};
  /// Completions in a period or, for `DayMode::dayInterval`, days.
  inline static const Attribute<std::int16_t> daysPerWeek{description, "daysPerWeek"};
  inline static const Attribute<std::int16_t> daysTimesPerDay{description, "daysTimesPerDay"};
  /// Absent for the setting of all tasks.
  inline static const Attribute<std::optional<CalendarDayOfWeek>> firstDayOfWeekValue{
      description, "firstDayOfWeekValue"};
  /// Absent for the setting of all tasks.
  inline static const Attribute<std::optional<HHMMSS>,
                                platform::DecodedForm<HHMMSS, StoredStartOfDay>>
      startOfDayValue{description, "startOfDayValue"};
  inline static const Attribute<bool> isNegative{description, "isNegative"};  ///< To be avoided.

  /// The task's buttons.
  inline static const Attribute<std::optional<TaskExtra>> customReminderType{description,
                                                                             "customReminderType"};

  // Kept for older programs and not read.
  inline static const Attribute<double> typeProgress{description, "typeProgress"};
  inline static const Attribute<std::int32_t> typeProgressDate{description, "typeProgressDate"};
  inline static const Attribute<std::int32_t> customReminderTime{description, "customReminderTime"};
  inline static const Attribute<std::int32_t> referenceDateValue{description, "referenceDateValue"};
  inline static const Attribute<std::int32_t> snoozeDate{description, "snoozeDate"};
  inline static const Attribute<std::int32_t> snoozeTime{description, "snoozeTime"};
  inline static const Attribute<std::optional<Date>> lastProcessedDate{description,
                                                                       "lastProcessedDate"};
  inline static const Attribute<Text> cloudStatus{description, "cloudStatus"};
  inline static const Attribute<std::optional<Date>> cloudStatusDate{description,
                                                                     "cloudStatusDate"};
  inline static const Attribute<std::int64_t> activeStreak{description, "activeStreak"};
  inline static const Attribute<std::int64_t> bestStreak{description, "bestStreak"};
  inline static const Attribute<std::int32_t> lastCompleted{description, "lastCompleted"};
  inline static const Attribute<std::int32_t> lastMissed{description, "lastMissed"};
  inline static const Attribute<std::int32_t> lastSkipped{description, "lastSkipped"};
  inline static const Attribute<std::int32_t> lastCompletedTime{description, "lastCompletedTime"};
  inline static const Attribute<std::int16_t> last7NumSamples{description, "last7NumSamples"};
  inline static const Attribute<std::int16_t> last30NumSamples{description, "last30NumSamples"};
  inline static const Attribute<double> last7Pct{description, "last7Pct"};
  inline static const Attribute<double> last30Pct{description, "last30Pct"};

  // Copied into the task's `TaskTemporalDataEntity` when that is first made, and then not read.
  inline static const Attribute<std::optional<Date>> lastChangedDifficulty{description,
                                                                           "lastChangedDifficulty"};
  inline static const Attribute<Text> lastChangedDifficultyStatus{description,
                                                                  "lastChangedDifficultyStatus"};
  inline static const Attribute<std::optional<TimeZone>> lastChangedDifficultyTimeZone{
      description, "lastChangedDifficultyTimeZone"};

  // What a task owns goes with it.
  static constexpr auto owned = platform::NSDeleteRule::cascade;
  inline static const ToMany<TaskLogEntryEntity> taskEntry{description, "taskEntry", "task", owned};
  inline static const ToMany<TaskNoteEntity> taskNote{description, "taskNote", "task", owned};
  inline static const ToMany<TaskCounterEntity> taskCounter{description, "taskCounter", "task",
                                                            owned};
  inline static const ToMany<TaskTimerEntity> taskTimer{description, "taskTimer", "task", owned};
  inline static const ToMany<TaskNotificationRemindersEntity> taskNotificationReminders{
      description, "taskNotificationReminders", "task", owned};
  inline static const ToMany<TaskCategoryEntity> taskCategories{description, "taskCategories",
                                                                "tasks"};
  inline static const ToOne<TaskNotificationSettingsEntity> taskNotificationSettings{
      description, "taskNotificationSettings", "task", owned};
  inline static const ToOne<TaskTemporalDataEntity> taskTemporalData{
      description, "taskTemporalData", "task", owned};
  inline static const ToOne<TaskShareEntity> taskShare{description, "taskShare", "task", owned};
  inline static const ToOne<UserProfileEntity> userProfile{description, "userProfile", "task"};
};

}  // namespace velloro
