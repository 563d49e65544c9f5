#pragma once

#include "VelloroCore/Reminders/TaskNotificationSettings.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace velloro {

/// A `TriggerRegion` as a backup has it.
struct VelloroJSONBackupTaskNotificationSettingsTriggerRegion {
  std::optional<std::string> title = {};
  std::optional<RegionType> regionType = {};
  std::optional<IconManagerIcon> icon = {};
  double latitude = 0, longitude = 0, radius = 0;
  bool notifyOnEntry = false, notifyOnExit = false;

  [[nodiscard]] TriggerRegion triggerRegion() const;

  bool operator==(const VelloroJSONBackupTaskNotificationSettingsTriggerRegion&) const = default;
  static constexpr auto codingKeys = [] {
    using R = VelloroJSONBackupTaskNotificationSettingsTriggerRegion;
    return keys(key("title", &R::title), key("regionType", &R::regionType), key("icon", &R::icon),
                key("latitude", &R::latitude), key("longitude", &R::longitude),
                key("radius", &R::radius), key("notifyOnEntry", &R::notifyOnEntry),
                key("notifyOnExit", &R::notifyOnExit));
  }();
};

/// A `TaskReminder` as a backup has it, without snooze.
struct VelloroJSONBackupTaskNotificationSettingsReminder {
  std::optional<UniqueID> identifier = {};
  std::optional<NotificationTimeZone> timeZone = {};
  std::optional<TaskReminder::TriggerType> triggerType = {};
  std::optional<HHMMSS> timeOfDay = {};
  std::optional<DaysOfWeek> days = {};
  std::optional<TaskReminder::DayIndexes> dayIndexesFromStart = {}, dayIndexesFromFinish = {};
  std::optional<VelloroJSONBackupTaskNotificationSettingsTriggerRegion> region = {};
  std::optional<double> duration = {};
  std::optional<SoundEffect> sound = {};

  /// Absent without a trigger, or without what the trigger needs. One without an identifier gets a
  /// new one.
  [[nodiscard]] std::optional<TaskReminder> taskReminder() const;

  bool operator==(const VelloroJSONBackupTaskNotificationSettingsReminder&) const = default;
  static constexpr auto codingKeys = [] {
    using R = VelloroJSONBackupTaskNotificationSettingsReminder;
    return keys(key("identifier", &R::identifier), key("timeZone", &R::timeZone),
                key("triggerType", &R::triggerType), key("timeOfDay", &R::timeOfDay),
                key("days", &R::days), key("dayIndexesFromStart", &R::dayIndexesFromStart),
                key("dayIndexesFromFinish", &R::dayIndexesFromFinish), key("region", &R::region),
                key("duration", &R::duration), key("sound", &R::sound));
  }();
};

/// A task's `TaskNotificationSettings` as a backup has them.
///
///     const TaskNotificationSettings settings{.reminderType = ReminderType::custom};
///     codableNotificationSettings(settings).notificationSettings() == settings;    // true
struct VelloroJSONBackupTaskNotificationSettings {
  std::optional<ReminderType> reminderType = {};
  std::optional<BadgeMode> badgeMode = {};
  std::optional<HHMMSS> badgeFrom = {}, badgeTo = {};
  std::optional<NotificationTimeZone> badgeTimeZone = {};
  std::optional<SoundEffect> completedOrMissedSound = {};
  std::optional<SoundEffect> partiallyCompletedOrMissedSound = {};
  std::optional<SoundEffect> reminderSound = {};
  std::optional<SoundEffect> timerNotificationSound = {};
  std::optional<std::vector<VelloroJSONBackupTaskNotificationSettingsReminder>> reminders = {};
  std::optional<std::int64_t> maxReminders = {};
  std::optional<bool> completedNotification = {};
  std::optional<bool> partiallyCompletedNotification = {};
  std::optional<bool> automaticRemindersAreTimeSensitive = {};
  std::optional<bool> completedNotificationIsTimeSensitive = {};
  std::optional<bool> partiallyCompletedNotificationIsTimeSensitive = {};
  std::optional<bool> timerNotificationsAreTimeSensitive = {};
  std::optional<LiveActivityDisplayMode> liveActivityDisplayMode = {};

  /// What is absent here is as `TaskNotificationSettings` has it at first.
  [[nodiscard]] TaskNotificationSettings notificationSettings() const;

  bool operator==(const VelloroJSONBackupTaskNotificationSettings&) const = default;
  static constexpr auto codingKeys = [] {
    using S = VelloroJSONBackupTaskNotificationSettings;
    return keys(
        key("reminderType", &S::reminderType), key("badgeMode", &S::badgeMode),
        key("badgeFrom", &S::badgeFrom), key("badgeTo", &S::badgeTo),
        key("badgeTimeZone", &S::badgeTimeZone),
        key("completedOrMissedSound", &S::completedOrMissedSound),
        key("partiallyCompletedOrMissedSound", &S::partiallyCompletedOrMissedSound),
        key("reminderSound", &S::reminderSound),
        key("timerNotificationSound", &S::timerNotificationSound), key("reminders", &S::reminders),
        key("maxReminders", &S::maxReminders),
        key("completedNotification", &S::completedNotification),
        key("partiallyCompletedNotification", &S::partiallyCompletedNotification),
        key("automaticRemindersAreTimeSensitive", &S::automaticRemindersAreTimeSensitive),
        key("completedNotificationIsTimeSensitive", &S::completedNotificationIsTimeSensitive),
        key("partiallyCompletedNotificationIsTimeSensitive",
            &S::partiallyCompletedNotificationIsTimeSensitive),
        key("timerNotificationsAreTimeSensitive", &S::timerNotificationsAreTimeSensitive),
        key("liveActivityDisplayMode", &S::liveActivityDisplayMode));
  }();
};

[[nodiscard]] VelloroJSONBackupTaskNotificationSettingsReminder codableTaskReminder(
    const TaskReminder& reminder);
[[nodiscard]] VelloroJSONBackupTaskNotificationSettings codableNotificationSettings(
    const TaskNotificationSettings& settings);

}  // namespace velloro
