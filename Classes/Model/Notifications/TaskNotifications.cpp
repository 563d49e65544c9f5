#include "Notifications/TaskNotifications.h"

#include "Notifications/IndividualReminder.h"
#include "Settings/Settings.h"
#include "Tasks/Rows/TaskEntity.h"
#include "VelloroCore/Reminders/TaskNotificationSettings.h"

namespace velloro {
namespace {

NotificationData dataOf(const TaskEntity& task, const NotificationTask& snapshot) {
  const TaskDisplayOrder order = task.taskDisplayOrder();
  return {.task = snapshot, .theme = Settings::shared().theme(order.pageNumber).positioned(order)};
}

/// With how far the task has come, where the period has begun and is not over.
TaskDisplayTitle titleOf(const TaskEntity& task, const TaskFrequencyPeriod& period,
                         const TaskProgress& progress, Date day, Date now) {
  const YYYYMMDD today = YYYYMMDD::fromDate(task.startOfDay(), now, task.taskCurrentTimeZone());
  return period.contains(today) ? task.displayTitle(progress, now) : task.displayTitle(day, now);
}

}  // namespace

std::optional<NotificationContent> TaskNotifications::reminder(
    const TaskEntity& task, const Reminder& reminder, FunctionRef<std::uint64_t()> random) const {
  const DatedPeriod period = task.frequency().period(reminder.day, task.firstDayOfWeek());
  const auto snapshot = task.notificationTaskCurrentProgress(period.period, builder.now);
  if (!snapshot) return std::nullopt;
  auto body =
      alertBodyForLocalIndividualNotification(task, period, reminder.day, random, builder.now);
  if (!body) return std::nullopt;
  NotificationData data = dataOf(task, *snapshot);
  data.reminderId = reminder.reminderId;
  const TaskNotificationSettings settings = task.notificationSettings();
  const Date day = reminder.day.startOfDay(task.startOfDay(), task.taskCurrentTimeZone());
  return builder.reminder(
      {.id = reminder.id,
       .displayTitle =
           titleOf(task, period.period, snapshot->completionStatus.progress(), day, builder.now),
       .body = *std::move(body),
       .data = std::move(data),
       .sound = settings.reminderSound,
       .trigger = reminder.trigger,
       .timeSensitive = reminder.timeSensitive});
}

std::optional<NotificationContent> TaskNotifications::completion(
    const TaskEntity& task, const TaskFrequencyPeriod& period) const {
  const TaskProgress next = task.progress(period, builder.now).nextProgress();
  const bool isPartial = next.numCompletions(builder.now) < next.expectedCompletions();
  const auto snapshot = task.notificationTaskWhenCompleted(period, isPartial, builder.now);
  if (!snapshot) return std::nullopt;
  const TaskNotificationSettings settings = task.notificationSettings();
  return builder.completion({.displayTitle = task.displayTitle(next, builder.now),
                             .data = dataOf(task, *snapshot),
                             .isPartial = isPartial,
                             .isTimer = task.isTimed(),
                             .isNegative = task.isNegative(),
                             .sound = isPartial ? settings.partiallyCompletedOrMissedSound
                                                : settings.completedOrMissedSound});
}

std::optional<NotificationContent> TaskNotifications::timedProgress(
    const TaskEntity& task, const TaskFrequencyPeriod& period) const {
  const TaskProgress progress = task.progress(period, builder.now);
  const auto* timer = progress.as<TaskProgressTimer>();
  const auto snapshot = task.notificationTaskCurrentProgress(period, builder.now);
  if (timer == nullptr || !snapshot || timer->remainingDuration() <= 0) return std::nullopt;
  return builder.timedProgressRemaining(
      {.id = NotificationID::timedProgress(snapshot->taskId, 0),
       .duration = timer->remainingDuration(),
       .displayTitle = task.displayTitle(progress, builder.now),
       .data = dataOf(task, *snapshot),
       .sound = task.notificationSettings().timerNotificationSound});
}

}  // namespace velloro
