#include "VelloroCore/Reminders/TaskNotificationSettings.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <tuple>

namespace velloro {
namespace {

using Trigger = TaskReminder::Trigger;
using TriggerType = TaskReminder::TriggerType;

/// How long before its finish a new task of that type speaks up.
std::vector<TimeInterval> defaultDurationsBeforeFinish(const DefaultSettingsTaskType& taskType) {
  if (const auto* timer = std::get_if<DefaultSettingsTaskType::Timer>(&taskType.value)) {
    if (timer->duration >= 900) return {60, 300};
    if (timer->duration >= 180) return {60};
  }
  const auto* screenTime = std::get_if<DefaultSettingsTaskType::ScreenTime>(&taskType.value);
  if (screenTime && screenTime->duration > 120) return {60};
  return {};
}

auto moreDaysFirst(const TaskReminder& reminder) {
  return -static_cast<std::int64_t>(reminder.daysOfWeek.size());
}

auto locationOrder(const TaskReminder& reminder) {
  const auto& region = reminder.trigger.region;
  const std::string* title = region && region->title ? &*region->title : nullptr;
  return std::tuple(title == nullptr, title ? std::string_view(*title) : std::string_view(),
                    moreDaysFirst(reminder));
}

auto timerOrder(const TaskReminder& reminder) {
  return std::tuple(reminder.trigger.type == TriggerType::durationBeforeFinish,
                    reminder.trigger.duration, moreDaysFirst(reminder));
}

/// The moment up to which the latest completion deals with what would be due; absent without one.
std::optional<Date> dealtWithUntil(std::span<const Date> completionTimes, TimeInterval allowance) {
  if (completionTimes.empty()) return std::nullopt;
  return std::ranges::max(completionTimes) + allowance;
}

std::optional<TimerReminderTime> timerReminderTime(const Trigger& trigger, TimeInterval total,
                                                   Date finish) {
  if (!trigger.duration) return std::nullopt;
  const TimeInterval duration = *trigger.duration;
  if (trigger.type == TriggerType::durationBeforeFinish) {
    return TimerReminderTime{TimerReminderType::remaining, duration, finish - duration};
  }
  if (trigger.type == TriggerType::durationAfterStart) {
    return TimerReminderTime{TimerReminderType::completed, duration, finish - (total - duration)};
  }
  return std::nullopt;
}

}  // namespace

TaskNotificationSettings TaskNotificationSettings::default_(const DefaultSettingsTaskType& taskType,
                                                            NotificationTimeZone timeZone) {
  const SoundEffect sound = defaultEffect;
  TaskNotificationSettings settings{.badgeMode = BadgeMode::includeWhenIncomplete,
                                    .reminderType = ReminderType::automatic,
                                    .completedNotification = true,
                                    .partiallyCompletedNotification = true,
                                    .completedOrMissedSound = sound,
                                    .partiallyCompletedOrMissedSound = sound,
                                    .reminderSound = sound,
                                    .timerNotificationSound = sound,
                                    .automaticRemindersAreTimeSensitive = false,
                                    .completedNotificationIsTimeSensitive = false,
                                    .partiallyCompletedNotificationIsTimeSensitive = false,
                                    .timerNotificationsAreTimeSensitive = false,
                                    .liveActivityDisplayMode = LiveActivityDisplayMode::automatic};
  for (const TimeInterval duration : defaultDurationsBeforeFinish(taskType)) {
    settings.reminders.push_back(
        {.uniqueId = UniqueID::create(),
         .timeZone = timeZone,
         .trigger = Trigger::fromDuration(TriggerType::durationBeforeFinish, duration),
         .daysOfWeek = everyDay()});
  }
  return settings;
}

std::vector<TaskReminder> TaskNotificationSettings::remindersOf(EnumSet<TriggerType> types) const {
  std::vector<TaskReminder> chosen;
  std::ranges::copy_if(reminders, std::back_inserter(chosen), [&](const TaskReminder& reminder) {
    return types.contains(reminder.trigger.type);
  });
  return chosen;
}

std::vector<TaskReminder> TaskNotificationSettings::timeOfDayReminders() const {
  return remindersOf(TriggerType::timeOfDay);
}

std::vector<TaskReminder> TaskNotificationSettings::sortedLocationReminders() const {
  std::vector<TaskReminder> sorted = remindersOf(TriggerType::location);
  std::ranges::stable_sort(sorted, std::less{}, locationOrder);
  return sorted;
}

std::vector<TaskReminder> TaskNotificationSettings::sortedTimerReminders() const {
  std::vector<TaskReminder> sorted =
      remindersOf({TriggerType::durationAfterStart, TriggerType::durationBeforeFinish});
  std::ranges::stable_sort(sorted, std::less{}, timerOrder);
  return sorted;
}

std::vector<Date> TaskNotificationSettings::sortedEstimatedRelevantTimes(
    const RelevantTimesRequest& request) const {
  const auto& [from, to, startOfDay, timeZone, recentCompletionTimes, allowance] = request;
  const TriggerType type =
      reminderType == ReminderType::none ? TriggerType::timeOfDayMuted : TriggerType::timeOfDay;
  const Date after =
      std::max(from, dealtWithUntil(recentCompletionTimes, allowance).value_or(from));
  const YYYYMMDD last = YYYYMMDD::fromDate(startOfDay, to, timeZone);

  std::vector<Date> times;
  for (YYYYMMDD day = YYYYMMDD::fromDate(startOfDay, from, timeZone); day <= last;
       day = day.nextDay(timeZone)) {
    const DayOfWeek weekday = day.dayOfWeek(timeZone);
    for (const TaskReminder& reminder : reminders) {
      const Trigger& trigger = reminder.trigger;
      const bool isOfDay = trigger.type == type && reminder.daysOfWeek.contains(weekday);
      if (!isOfDay || !trigger.timeOfDay) continue;
      const Date time = day.dateAt(startOfDay, *trigger.timeOfDay, timeZone);
      if (after <= time && time < to) times.push_back(time);
    }
  }
  std::ranges::sort(times);
  return times;
}

std::vector<TaskReminder> TaskNotificationSettings::remainingTimeOfDayReminders(
    std::span<const Date> recentCompletionTimes, TimeInterval allowance, HHMMSS startOfDay,
    TimeZone timeZone, Date now) const {
  std::vector<TaskReminder> remaining = timeOfDayReminders();
  const auto dealtWith = dealtWithUntil(recentCompletionTimes, allowance);
  if (!dealtWith) return remaining;
  const YYYYMMDD today = YYYYMMDD::today(startOfDay, timeZone, now);
  std::erase_if(remaining, [&](const TaskReminder& reminder) {
    const auto& time = reminder.trigger.timeOfDay;
    return time && today.dateAt(startOfDay, *time, timeZone) <= *dealtWith;
  });
  return remaining;
}

std::vector<TimerReminderTime> TaskNotificationSettings::sortedPendingTimerReminderTimes(
    TimeInterval totalDurationForPartialCompletion, Date currentFinishDate, Date now) const {
  const Date start = currentFinishDate - totalDurationForPartialCompletion;
  const Date after = std::max(start, now);
  std::vector<TimerReminderTime> times;
  for (const TaskReminder& reminder : reminders) {
    const auto time =
        timerReminderTime(reminder.trigger, totalDurationForPartialCompletion, currentFinishDate);
    if (time && after < time->date && time->date < currentFinishDate) times.push_back(*time);
  }
  std::ranges::stable_sort(times, std::less{}, &TimerReminderTime::date);
  return times;
}

TaskNotificationSettings TaskNotificationSettings::snoozeNow(const UniqueID& reminderId,
                                                             const SnoozeRequest& request) const {
  const YYYYMMDD today = YYYYMMDD::today(request.startOfDay, request.timeZone, request.now);
  const HHMMSS time = HHMMSS::now(request.deviceTimeZone, request.now);
  TaskNotificationSettings settings = *this;
  settings.liveActivityDisplayMode = LiveActivityDisplayMode::automatic;
  for (TaskReminder& reminder : settings.reminders) {
    if (reminder.uniqueId != reminderId) continue;
    reminder = reminder.withSnooze(today, time, reminder.snoozeTimeZone)
                   .with(reminder.daysOfWeek, reminder.trigger);
    reminder.timeZone = request.notificationTimeZone;
  }
  return settings;
}

}  // namespace velloro
