#pragma once

#include "CoreData/Model/EntityClass.h"
#include "Tasks/Columns/StoredForms.h"
#include "VelloroCore/Reminders/TaskNotificationSettings.h"

namespace velloro {

class TaskEntity;

/// A task's `TaskNotificationSettings` but for the reminders, which have rows of their own. One row
/// a task.
class TaskNotificationSettingsEntity : public EntityClass<TaskNotificationSettingsEntity> {
 public:
  using Text = std::optional<std::string>;

  inline static auto description = NSEntityDescription::of<TaskNotificationSettingsEntity>();
  inline static const Attribute<std::optional<ReminderType>> reminderType{description,
                                                                          "reminderType"};
  inline static const Attribute<std::optional<BadgeMode>> badgeMode{description, "badgeMode"};
  inline static const BoxedAttribute<HHMMSS> badgeFrom{description, "badgeFrom"};
  inline static const BoxedAttribute<HHMMSS> badgeTo{description, "badgeTo"};
  inline static const Attribute<std::optional<NotificationTimeZone>> badgeTimeZone{description,
                                                                                   "badgeTimeZone"};
  inline static const Attribute<std::optional<std::int64_t>> maxReminders{description,
                                                                          "maxReminders"};
  inline static const Attribute<std::optional<SoundEffect>> soundCompletion{description,
                                                                            "soundCompletion"};
  inline static const Attribute<std::optional<SoundEffect>> soundPartialCompletion{
      description, "soundPartialCompletion"};
  inline static const Attribute<std::optional<SoundEffect>> soundReminder{description,
                                                                          "soundReminder"};
  inline static const Attribute<std::optional<SoundEffect>> soundTimerNotification{
      description, "soundTimerNotification"};
  inline static const Attribute<bool> completedNotification{description, "completedNotification"};
  inline static const Attribute<bool> partiallyCompletedNotification{
      description, "partiallyCompletedNotification"};
  inline static const Attribute<bool> automaticRemindersAreTimeSensitive{
      description, "automaticRemindersAreTimeSensitive"};
  inline static const Attribute<bool> completedNotificationIsTimeSensitive{
      description, "completedNotificationIsTimeSensitive"};
  inline static const Attribute<bool> partiallyCompletedNotificationIsTimeSensitive{
      description, "partiallyCompletedNotificationIsTimeSensitive"};
  inline static const Attribute<bool> timerNotificationsAreTimeSensitive{
      description, "timerNotificationsAreTimeSensitive"};
  inline static const Attribute<std::optional<LiveActivityDisplayMode>> liveActivityDisplayMode{
      description, "liveActivityDisplayMode"};
  /// When the row last changed.
  inline static const Attribute<std::optional<Date>> lastUpdated{description, "lastUpdated"};
  // Kept for older programs and not read.
  inline static const Attribute<std::optional<std::int64_t>> snoozeDuration{description,
                                                                            "snoozeDuration"};
  inline static const Attribute<Text> difficultyNotificationStatus{description,
                                                                   "difficultyNotificationStatus"};
  inline static const ToOne<TaskEntity> task{description, "task", "taskNotificationSettings"};

  /// Without reminders. What is not stored, or not known, is as in an empty record.
  [[nodiscard]] TaskNotificationSettings settings() const;
  /// Writes what differs, but no reminders. Whether the row then has unsaved changes; if so, it is
  /// dated now.
  bool setSettings(const TaskNotificationSettings& settings);
};

}  // namespace velloro
