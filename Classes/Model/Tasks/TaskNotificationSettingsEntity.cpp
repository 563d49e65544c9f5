#include "Tasks/TaskNotificationSettingsEntity.h"

#include "Tasks/StoredValues.h"

namespace velloro {

TaskNotificationSettings TaskNotificationSettingsEntity::settings() const {
  return {
      .badgeMode = enumValue<BadgeMode>(badgeMode).value_or(BadgeMode::doNotInclude),
      .badgeFrom = storedTime(value(badgeFrom)),
      .badgeTo = storedTime(value(badgeTo)),
      .badgeTimeZone = enumValue<NotificationTimeZone>(badgeTimeZone),
      .reminderType = enumValue<ReminderType>(reminderType).value_or(ReminderType::none),
      .maxReminders = value(maxReminders).value_or(0),
      .completedNotification = value(completedNotification),
      .partiallyCompletedNotification = value(partiallyCompletedNotification),
      .completedOrMissedSound = enumValue<SoundEffect>(soundCompletion),
      .partiallyCompletedOrMissedSound = enumValue<SoundEffect>(soundPartialCompletion),
      .reminderSound = enumValue<SoundEffect>(soundReminder),
      .timerNotificationSound = enumValue<SoundEffect>(soundTimerNotification),
      .automaticRemindersAreTimeSensitive = value(automaticRemindersAreTimeSensitive),
      .completedNotificationIsTimeSensitive = value(completedNotificationIsTimeSensitive),
      .partiallyCompletedNotificationIsTimeSensitive =
          value(partiallyCompletedNotificationIsTimeSensitive),
      .timerNotificationsAreTimeSensitive = value(timerNotificationsAreTimeSensitive),
      .liveActivityDisplayMode = enumValue<LiveActivityDisplayMode>(liveActivityDisplayMode),
  };
}

}  // namespace velloro
