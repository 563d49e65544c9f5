#include "Tasks/Rows/TaskNotificationSettingsEntity.h"

#include "Tasks/Columns/StoredValues.h"

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

bool TaskNotificationSettingsEntity::setSettings(const TaskNotificationSettings& settings) {
  const auto seconds = [](std::optional<HHMMSS> time) {
    return time ? std::optional(static_cast<std::int32_t>(time->intValue())) : std::nullopt;
  };
  const auto isOn = [](std::optional<bool> flag) { return flag.value_or(false); };
  writeEnum<BadgeMode>(badgeMode, settings.badgeMode);
  writeValue(badgeFrom, seconds(settings.badgeFrom));
  writeValue(badgeTo, seconds(settings.badgeTo));
  writeEnum(badgeTimeZone, settings.badgeTimeZone);
  writeEnum<ReminderType>(reminderType, settings.reminderType);
  writeValue(maxReminders, settings.maxReminders);
  writeValue(completedNotification, settings.completedNotification);
  writeValue(partiallyCompletedNotification, isOn(settings.partiallyCompletedNotification));
  writeEnum(soundCompletion, settings.completedOrMissedSound);
  writeEnum(soundPartialCompletion, settings.partiallyCompletedOrMissedSound);
  writeEnum(soundReminder, settings.reminderSound);
  writeEnum(soundTimerNotification, settings.timerNotificationSound);
  writeValue(automaticRemindersAreTimeSensitive, isOn(settings.automaticRemindersAreTimeSensitive));
  writeValue(completedNotificationIsTimeSensitive,
             isOn(settings.completedNotificationIsTimeSensitive));
  writeValue(partiallyCompletedNotificationIsTimeSensitive,
             isOn(settings.partiallyCompletedNotificationIsTimeSensitive));
  writeValue(timerNotificationsAreTimeSensitive, isOn(settings.timerNotificationsAreTimeSensitive));
  writeEnum(liveActivityDisplayMode, settings.liveActivityDisplayMode);
  if (changedValues().empty()) return false;
  setValue(lastUpdated, Date::now());
  return true;
}

}  // namespace velloro
