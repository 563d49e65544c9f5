#pragma once

#include "CoreData/Model/EntityClass.h"
#include "Tasks/Columns/StoredForms.h"
#include "VelloroCore/Reminders/TaskReminder.h"

namespace velloro {

class TaskEntity;

/// One reminder of a task.
class TaskNotificationRemindersEntity : public EntityClass<TaskNotificationRemindersEntity> {
 public:
  using Text = std::optional<std::string>;
  using DayIndexes = TaskReminder::DayIndexes;
  using DayIndexesAttribute =
      Attribute<std::optional<DayIndexes>, DecodedForm<DayIndexes, StoredDayIndexes>>;

  inline static auto description = NSEntityDescription::of<TaskNotificationRemindersEntity>();
  inline static const Attribute<std::optional<UniqueID>> uniqueId{description, "uniqueId"};
  /// A time of day where it is absent or unknown.
  inline static const Attribute<std::optional<TaskReminder::TriggerType>> reminderType{
      description, "reminderType"};
  /// For a time of day, muted or not.
  inline static const BoxedAttribute<HHMMSS> timeOfDay{description, "timeOfDay"};
  inline static const BoxedAttribute<DaysOfWeek> daysOfWeek{description, "daysOfWeek"};
  inline static const DayIndexesAttribute daysFromStart{description, "daysFromStart"};
  inline static const DayIndexesAttribute daysFromFinish{description, "daysFromFinish"};
  /// For a place.
  inline static const Attribute<std::optional<TriggerRegion>> region{description, "region"};
  /// Seconds, for a duration.
  inline static const Attribute<std::optional<double>> duration{description, "duration"};
  inline static const Attribute<Text> icon{description, "icon"};
  inline static const Attribute<std::optional<SoundEffect>> sound{description, "sound"};
  inline static const Attribute<std::optional<NotificationTimeZone>> timeZone{description,
                                                                              "timeZone"};
  inline static const Attribute<std::optional<NotificationTimeZone>> snoozeTimeZone{
      description, "snoozeTimeZone"};
  // The day and the time at which it was put off.
  inline static const BoxedAttribute<YYYYMMDD> snoozeDate{description, "snoozeDate"};
  inline static const BoxedAttribute<HHMMSS> snoozeTime{description, "snoozeTime"};
  inline static const ToOne<TaskEntity> task{description, "task", "taskNotificationReminders"};

  /// Absent when the row lacks what its trigger needs, its days, or an identifier.
  [[nodiscard]] std::optional<TaskReminder> reminder() const;

  /// A reminder as far as rows tell reminders apart: without its identifier, and without what only
  /// the record has. Absent when its trigger lacks what it needs.
  [[nodiscard]] static std::optional<TaskReminder> asStored(const TaskReminder& reminder);
  void setReminder(const TaskReminder& reminder, const UniqueID& id);

  /// A known type whose trigger lacks what it needs takes the reminder along.
  [[nodiscard]] bool canRead(std::size_t slot) const override;

 private:
  [[nodiscard]] std::optional<TaskReminder::Trigger> trigger() const;
};

}  // namespace velloro
