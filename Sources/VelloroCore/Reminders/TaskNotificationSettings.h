#pragma once

#include "VelloroCore/Reminders/DefaultSettingsTaskType.h"
#include "VelloroCore/Reminders/NotificationModes.h"
#include "VelloroCore/Reminders/TaskReminder.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace velloro {

/// Whether a timer's reminder mentions the time done or the time left.
enum class TimerReminderType : std::int8_t { completed, remaining };

/// An instant of a running timer at which its user is notified.
struct TimerReminderTime {
  TimerReminderType type = TimerReminderType::completed;
  TimeInterval duration = 0;  ///< That is done, or left.
  Date date;

  bool operator==(const TimerReminderTime&) const = default;
};

/// Which notifications a task sends, when and how.
///
///     const auto settings = TaskNotificationSettings::default_(
///         DefaultSettingsTaskType::timer(600), NotificationTimeZone::taskOwner);
///     settings.sortedPendingTimerReminderTimes(600, now + 600, now).size();
///     // 1: 60 seconds remain, at nine minutes from now
///
/// Completion times come in any order; the latest of them also deals with what is due in the
/// `allowance` seconds behind it.
struct TaskNotificationSettings {
  BadgeMode badgeMode = BadgeMode::doNotInclude;
  std::optional<HHMMSS> badgeFrom = {}, badgeTo = {};  ///< Absent: open on that side.
  std::optional<NotificationTimeZone> badgeTimeZone = {};
  ReminderType reminderType = ReminderType::none;
  std::int64_t maxReminders = 0;
  bool completedNotification = false;
  std::optional<bool> partiallyCompletedNotification = {};
  // Absent: no sound.
  std::optional<SoundEffect> completedOrMissedSound = {};
  std::optional<SoundEffect> partiallyCompletedOrMissedSound = {};
  std::optional<SoundEffect> reminderSound = {};
  std::optional<SoundEffect> timerNotificationSound = {};
  std::optional<bool> automaticRemindersAreTimeSensitive = {};
  std::optional<bool> completedNotificationIsTimeSensitive = {};
  std::optional<bool> partiallyCompletedNotificationIsTimeSensitive = {};
  std::optional<bool> timerNotificationsAreTimeSensitive = {};
  std::optional<LiveActivityDisplayMode> liveActivityDisplayMode = {};
  std::vector<TaskReminder> reminders = {};

  /// The settings of a new task. A timer of 3 minutes or more notifies when one minute is left, a
  /// timer of 15 minutes or more also when five are left, and screen time of more than 2 minutes
  /// when one is left.
  [[nodiscard]] static TaskNotificationSettings default_(const DefaultSettingsTaskType& taskType,
                                                         NotificationTimeZone timeZone);

  /// The reminders of some types, in their order in the list.
  [[nodiscard]] std::vector<TaskReminder> remindersOf(
      EnumSet<TaskReminder::TriggerType> types) const;
  [[nodiscard]] std::vector<TaskReminder> timeOfDayReminders() const;
  /// Those with a title first, by their titles; of equal titles those of more days first.
  [[nodiscard]] std::vector<TaskReminder> sortedLocationReminders() const;
  /// Those counted from the start first, the shorter ones before the longer; one without a duration
  /// leads its kind, and of equal ones that of more days.
  [[nodiscard]] std::vector<TaskReminder> sortedTimerReminders() const;

  struct RelevantTimesRequest {
    Date from;
    Date to;
    HHMMSS startOfDay;
    TimeZone timeZone = TimeZone::gmt();
    std::span<const Date> recentCompletionTimes = {};
    TimeInterval allowance = 0;
  };
  /// The moments, from `from` on and before `to`, at which the task is likely to matter and that
  /// no completion has dealt with: its times of day on their days, or, where no reminders are
  /// wanted, its muted ones. A moment at the very end of the allowance is in the list.
  [[nodiscard]] std::vector<Date> sortedEstimatedRelevantTimes(
      const RelevantTimesRequest& request) const;

  /// The reminders by time of day without those that a completion has dealt with today, up to and
  /// with the very end of the allowance. Their days are not looked at.
  [[nodiscard]] std::vector<TaskReminder> remainingTimeOfDayReminders(
      std::span<const Date> recentCompletionTimes, TimeInterval allowance, HHMMSS startOfDay,
      TimeZone timeZone, Date now) const;

  /// The remaining notifications of a running timer: those after now, and strictly between its
  /// start and its finish.
  [[nodiscard]] std::vector<TimerReminderTime> sortedPendingTimerReminderTimes(
      TimeInterval totalDurationForPartialCompletion, Date currentFinishDate, Date now) const;

  /// By whose clocks a reminder is put off.
  struct SnoozeRequest {
    HHMMSS startOfDay;
    TimeZone timeZone;        ///< The task's.
    TimeZone deviceTimeZone;  ///< That of the clock that its user sees.
    NotificationTimeZone notificationTimeZone;
    Date now;
  };
  /// The settings with one reminder put off: from now by the device's clock, on the present logical
  /// day of the task. The reminder comes to stand in `notificationTimeZone` and loses its day
  /// indexes, and `liveActivityDisplayMode` becomes automatic.
  [[nodiscard]] TaskNotificationSettings snoozeNow(const UniqueID& reminderId,
                                                   const SnoozeRequest& request) const;

  bool operator==(const TaskNotificationSettings&) const = default;
  static constexpr auto codingKeys = [] {
    using S = TaskNotificationSettings;
    return keys(
        key("badgeMode", &S::badgeMode, initialWhenUnknown), key("badgeFrom", &S::badgeFrom),
        key("badgeTo", &S::badgeTo), key("badgeTimeZone", &S::badgeTimeZone),
        key("reminderType", &S::reminderType, initialWhenUnknown),
        key("maxReminders", &S::maxReminders, initialWhenUnknown),
        key("completedNotification", &S::completedNotification),
        key("partiallyCompletedNotification", &S::partiallyCompletedNotification),
        key("completedOrMissedSound", &S::completedOrMissedSound),
        key("partiallyCompletedOrMissedSound", &S::partiallyCompletedOrMissedSound),
        key("reminderSound", &S::reminderSound),
        key("timerNotificationSound", &S::timerNotificationSound),
        key("automaticRemindersAreTimeSensitive", &S::automaticRemindersAreTimeSensitive),
        key("completedNotificationIsTimeSensitive", &S::completedNotificationIsTimeSensitive),
        key("partiallyCompletedNotificationIsTimeSensitive",
            &S::partiallyCompletedNotificationIsTimeSensitive),
        key("timerNotificationsAreTimeSensitive", &S::timerNotificationsAreTimeSensitive),
        key("liveActivityDisplayMode", &S::liveActivityDisplayMode),
        key("reminders", &S::reminders));
  }();
};

}  // namespace velloro
