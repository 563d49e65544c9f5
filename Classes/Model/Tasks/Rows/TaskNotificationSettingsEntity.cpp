#include "Tasks/Rows/TaskNotificationSettingsEntity.h"

namespace velloro {

TaskNotificationSettings TaskNotificationSettingsEntity::settings() const {
  return {
      .badgeMode = value(badgeMode).value_or(BadgeMode::doNotInclude),
      .badgeFrom = value(badgeFrom),
      .badgeTo = value(badgeTo),
      .badgeTimeZone = value(badgeTimeZone),
      .reminderType = value(reminderType).value_or(ReminderType::none),
      .maxReminders = value(maxReminders).value_or(0),
      .completedNotification = value(completedNotification),
      .partiallyCompletedNotification = value(partiallyCompletedNotification),
      .completedOrMissedSound = value(soundCompletion),
      .partiallyCompletedOrMissedSound = value(soundPartialCompletion),
      .reminderSound = value(soundReminder),
      .timerNotificationSound = value(soundTimerNotification),
      .automaticRemindersAreTimeSensitive = value(automaticRemindersAreTimeSensitive),
      .completedNotificationIsTimeSensitive = value(completedNotificationIsTimeSensitive),
      .partiallyCompletedNotificationIsTimeSensitive =
          value(partiallyCompletedNotificationIsTimeSensitive),
      .timerNotificationsAreTimeSensitive = value(timerNotificationsAreTimeSensitive),
      .liveActivityDisplayMode = value(liveActivityDisplayMode),
  };
}

bool TaskNotificationSettingsEntity::setSettings(const TaskNotificationSettings& settings) {
  const auto isOn = [](std::optional<bool> flag) { return flag.value_or(false); };
  // A text of which nothing is known is replaced by a choice alone, not by what it reads as.
  const TaskNotificationSettings before = this->settings();
  const auto differs = [&](const auto& one, const auto& other) {
    return isInserted() || one != other;
  };
  if (differs(before.badgeMode, settings.badgeMode)) writeValue(badgeMode, settings.badgeMode);
  writeValue(badgeFrom, settings.badgeFrom);
  writeValue(badgeTo, settings.badgeTo);
  writeValue(badgeTimeZone, settings.badgeTimeZone);
  if (differs(before.reminderType, settings.reminderType)) {
    writeValue(reminderType, settings.reminderType);
  }
  if (differs(before.maxReminders, settings.maxReminders)) {
    writeValue(maxReminders, settings.maxReminders);
  }
  writeValue(completedNotification, settings.completedNotification);
  writeValue(partiallyCompletedNotification, isOn(settings.partiallyCompletedNotification));
  writeValue(soundCompletion, settings.completedOrMissedSound);
  writeValue(soundPartialCompletion, settings.partiallyCompletedOrMissedSound);
  writeValue(soundReminder, settings.reminderSound);
  writeValue(soundTimerNotification, settings.timerNotificationSound);
  writeValue(automaticRemindersAreTimeSensitive, isOn(settings.automaticRemindersAreTimeSensitive));
  writeValue(completedNotificationIsTimeSensitive,
             isOn(settings.completedNotificationIsTimeSensitive));
  writeValue(partiallyCompletedNotificationIsTimeSensitive,
             isOn(settings.partiallyCompletedNotificationIsTimeSensitive));
  writeValue(timerNotificationsAreTimeSensitive, isOn(settings.timerNotificationsAreTimeSensitive));
  writeValue(liveActivityDisplayMode, settings.liveActivityDisplayMode);
  if (changedValues().empty()) return false;
  setValue(lastUpdated, Date::now());
  return true;
}

}  // namespace velloro
