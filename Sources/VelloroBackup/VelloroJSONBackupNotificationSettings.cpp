#include "VelloroBackup/VelloroJSONBackupNotificationSettings.h"

namespace velloro {
namespace {

using Region = VelloroJSONBackupTaskNotificationSettingsTriggerRegion;
using Reminder = VelloroJSONBackupTaskNotificationSettingsReminder;
using Settings = VelloroJSONBackupTaskNotificationSettings;
using Trigger = TaskReminder::Trigger;

Region codable(const TriggerRegion& region) {
  return {.title = region.title,
          .regionType = region.type,
          .icon = region.icon,
          .latitude = region.latitude,
          .longitude = region.longitude,
          .radius = region.radius,
          .notifyOnEntry = region.notifyOnEntry,
          .notifyOnExit = region.notifyOnExit};
}

std::optional<Trigger> triggerOf(const Reminder& reminder) {
  using enum TaskReminder::TriggerType;
  if (!reminder.triggerType) return std::nullopt;
  switch (*reminder.triggerType) {
    case timeOfDay:
    case timeOfDayMuted:
      if (!reminder.timeOfDay) return std::nullopt;
      return Trigger{.type = *reminder.triggerType, .timeOfDay = reminder.timeOfDay};
    case location:
      if (!reminder.region) return std::nullopt;
      return Trigger::fromRegion(reminder.region->triggerRegion());
    case durationAfterStart:
    case durationBeforeFinish:
      if (!reminder.duration) return std::nullopt;
      return Trigger::fromDuration(*reminder.triggerType, *reminder.duration);
  }
  return std::nullopt;
}

}  // namespace

TriggerRegion Region::triggerRegion() const {
  return {.type = regionType,
          .title = title,
          .latitude = latitude,
          .longitude = longitude,
          .radius = radius,
          .notifyOnEntry = notifyOnEntry,
          .notifyOnExit = notifyOnExit,
          .icon = icon};
}

std::optional<TaskReminder> Reminder::taskReminder() const {
  auto trigger = triggerOf(*this);
  if (!trigger) return std::nullopt;
  return TaskReminder{.uniqueId = identifier ? *identifier : UniqueID::create(),
                      .timeZone = timeZone,
                      .trigger = *std::move(trigger),
                      .daysOfWeek = days.value_or(DaysOfWeek()).daysOfWeek(),
                      .dayIndexesFromStart = dayIndexesFromStart,
                      .dayIndexesFromFinish = dayIndexesFromFinish,
                      .sound = sound};
}

TaskNotificationSettings Settings::notificationSettings() const {
  TaskNotificationSettings settings;
  settings.badgeMode = badgeMode.value_or(settings.badgeMode);
  settings.badgeFrom = badgeFrom;
  settings.badgeTo = badgeTo;
  settings.badgeTimeZone = badgeTimeZone;
  settings.reminderType = reminderType.value_or(settings.reminderType);
  settings.maxReminders = maxReminders.value_or(settings.maxReminders);
  settings.completedNotification = completedNotification.value_or(settings.completedNotification);
  settings.partiallyCompletedNotification = partiallyCompletedNotification;
  settings.completedOrMissedSound = completedOrMissedSound;
  settings.partiallyCompletedOrMissedSound = partiallyCompletedOrMissedSound;
  settings.reminderSound = reminderSound;
  settings.timerNotificationSound = timerNotificationSound;
  settings.automaticRemindersAreTimeSensitive = automaticRemindersAreTimeSensitive;
  settings.completedNotificationIsTimeSensitive = completedNotificationIsTimeSensitive;
  settings.partiallyCompletedNotificationIsTimeSensitive =
      partiallyCompletedNotificationIsTimeSensitive;
  settings.timerNotificationsAreTimeSensitive = timerNotificationsAreTimeSensitive;
  settings.liveActivityDisplayMode = liveActivityDisplayMode;
  if (!reminders) return settings;
  for (const auto& each : *reminders) {
    if (auto reminder = each.taskReminder()) settings.reminders.push_back(*std::move(reminder));
  }
  return settings;
}

Reminder codableTaskReminder(const TaskReminder& reminder) {
  const Trigger& trigger = reminder.trigger;
  Reminder record{.identifier = reminder.uniqueId,
                  .timeZone = reminder.timeZone,
                  .triggerType = trigger.type,
                  .timeOfDay = trigger.timeOfDay,
                  .days = daysOfWeek(reminder.daysOfWeek),
                  .dayIndexesFromStart = reminder.dayIndexesFromStart,
                  .dayIndexesFromFinish = reminder.dayIndexesFromFinish,
                  .duration = trigger.duration,
                  .sound = reminder.sound};
  const bool isOfRegion = trigger.type == TaskReminder::TriggerType::location;
  if (isOfRegion && trigger.region) record.region = codable(*trigger.region);
  return record;
}

Settings codableNotificationSettings(const TaskNotificationSettings& settings) {
  Settings record{
      .reminderType = settings.reminderType,
      .badgeMode = settings.badgeMode,
      .badgeFrom = settings.badgeFrom,
      .badgeTo = settings.badgeTo,
      .badgeTimeZone = settings.badgeTimeZone,
      .completedOrMissedSound = settings.completedOrMissedSound,
      .partiallyCompletedOrMissedSound = settings.partiallyCompletedOrMissedSound,
      .reminderSound = settings.reminderSound,
      .timerNotificationSound = settings.timerNotificationSound,
      .maxReminders = settings.maxReminders,
      .completedNotification = settings.completedNotification,
      .partiallyCompletedNotification = settings.partiallyCompletedNotification,
      .automaticRemindersAreTimeSensitive = settings.automaticRemindersAreTimeSensitive,
      .completedNotificationIsTimeSensitive = settings.completedNotificationIsTimeSensitive,
      .partiallyCompletedNotificationIsTimeSensitive =
          settings.partiallyCompletedNotificationIsTimeSensitive,
      .timerNotificationsAreTimeSensitive = settings.timerNotificationsAreTimeSensitive,
      .liveActivityDisplayMode = settings.liveActivityDisplayMode};
  auto& reminders = record.reminders.emplace();
  for (const auto& reminder : settings.reminders) {
    reminders.push_back(codableTaskReminder(reminder));
  }
  return record;
}

}  // namespace velloro
