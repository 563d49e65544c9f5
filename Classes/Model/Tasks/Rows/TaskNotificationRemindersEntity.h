#pragma once

#include "CoreData/Model/EntityClass.h"
#include "VelloroCore/Reminders/TaskReminder.h"

namespace velloro {

class TaskEntity;

/// One reminder of a task.
class TaskNotificationRemindersEntity : public EntityClass<TaskNotificationRemindersEntity> {
 public:
  using Text = std::optional<std::string>;
  using Number = std::optional<std::int32_t>;

  inline static auto description = NSEntityDescription::of<TaskNotificationRemindersEntity>();
  inline static const IdentifierAttribute uniqueId{description, "uniqueId"};
  /// Of `TaskReminder::TriggerType`; "tod" where it is absent or unknown.
  inline static const Attribute<Text> reminderType{description, "reminderType"};
  /// A time, for "tod" and "todm".
  inline static const Attribute<Number> timeOfDay{description, "timeOfDay"};
  inline static const Attribute<std::optional<std::int16_t>> daysOfWeek{description, "daysOfWeek"};
  // Indexes of days with "," between them.
  inline static const Attribute<Text> daysFromStart{description, "daysFromStart"};
  inline static const Attribute<Text> daysFromFinish{description, "daysFromFinish"};
  /// JSON of `TriggerRegion`, for "loc".
  inline static const Attribute<std::optional<Data>> region{description, "region"};
  /// Seconds, for "das" and "dbf".
  inline static const Attribute<std::optional<double>> duration{description, "duration"};
  inline static const Attribute<Text> icon{description, "icon"};
  inline static const Attribute<Text> sound{description, "sound"};  ///< Of `SoundEffect`.
  // Of `NotificationTimeZone`.
  inline static const Attribute<Text> timeZone{description, "timeZone"};
  inline static const Attribute<Text> snoozeTimeZone{description, "snoozeTimeZone"};
  // The day and the time at which it was put off.
  inline static const Attribute<Number> snoozeDate{description, "snoozeDate"};
  inline static const Attribute<Number> snoozeTime{description, "snoozeTime"};
  inline static const ToOne<TaskEntity> task{description, "task", "taskNotificationReminders"};

  /// Whether each of the indexes in such a text is one; others are skipped.
  [[nodiscard]] static bool canReadDayIndexes(const std::string& stored);

  /// Absent when the row lacks what its trigger needs, its days, or an identifier.
  [[nodiscard]] std::optional<TaskReminder> reminder() const;

  /// A reminder as far as rows tell reminders apart: without its identifier, and without what only
  /// the record has. Absent when its trigger lacks what it needs.
  [[nodiscard]] static std::optional<TaskReminder> asStored(const TaskReminder& reminder);
  void setReminder(const TaskReminder& reminder, const UniqueID& id);

 private:
  [[nodiscard]] std::optional<TaskReminder::Trigger> trigger() const;
};

}  // namespace velloro
