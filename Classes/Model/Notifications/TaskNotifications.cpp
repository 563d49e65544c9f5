#include "Notifications/TaskNotifications.h"

#include "Notifications/IndividualReminder.h"
#include "Settings/Settings.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Status/StoredTaskRecords.h"
#include "Tasks/Status/StoredTaskStatus.h"

#include <utility>

namespace velloro {

TaskNotifications TaskNotifications::of(const TaskEntity& task,
                                        const NotificationContentBuilder& builder) {
  const TaskDisplayOrder order = task.taskDisplayOrder();
  return {.builder = builder,
          .task = TaskSnapshot::of(task, builder.now),
          .settings = task.notificationSettings(),
          .theme = Settings::shared().theme(order.pageNumber).positioned(order)};
}

TaskNotifications::Day TaskNotifications::day(YYYYMMDD date) const {
  const DatedPeriod period = task.datedPeriod(date);
  return {.period = period, .status = streakedCompletionStatus(task, period.period)};
}

std::optional<NotificationContent> TaskNotifications::reminder(
    const Day& day, const Reminder& reminder, FunctionRef<std::uint64_t()> random) const {
  auto carried = notificationTask(task, day.status);
  if (!carried) return std::nullopt;
  auto body = IndividualReminder(task, day.period, day.period.date, day.status).pickedText(random);
  if (!body) return std::nullopt;
  // Before a period begins there is no progress, and the title has the whole target.
  TaskDisplayTitle title = carried->displayTitle;
  return builder.reminder(
      {.id = reminder.id,
       .displayTitle = std::move(title),
       .body = *std::move(body),
       .data = {.reminderId = reminder.reminderId, .task = *std::move(carried), .theme = theme},
       .sound = settings.reminderSound,
       .trigger = reminder.trigger,
       .timeSensitive = reminder.timeSensitive});
}

std::optional<NotificationContent> TaskNotifications::completion(
    const TaskFrequencyPeriod& period) const {
  const TaskProgress next = task.standing.progress(period).nextProgress();
  const bool isPartial = next.numCompletions(builder.now) < next.expectedCompletions();
  const auto [status, streak] = streakedCompletionStatus(task, period);
  auto carried =
      notificationTask(task, status.nextCompletionStatus(streak, isPartial, builder.now));
  if (!carried) return std::nullopt;
  const auto& type = task.standing.automaticTaskType;
  return builder.completion({.displayTitle = displayTitle(task, next),
                             .data = {.task = *std::move(carried), .theme = theme},
                             .isPartial = isPartial,
                             .isTimer = type && type->isTimed(),
                             .isNegative = task.standing.isNegative,
                             .sound = isPartial ? settings.partiallyCompletedOrMissedSound
                                                : settings.completedOrMissedSound});
}

std::optional<NotificationContent> TaskNotifications::timedProgress(
    const TaskFrequencyPeriod& period) const {
  const TaskProgress progress = task.standing.progress(period);
  const auto* timer = progress.as<TaskProgressTimer>();
  if (timer == nullptr || timer->remainingDuration() <= 0) return std::nullopt;
  auto carried = notificationTask(task, streakedCompletionStatus(task, period));
  if (!carried) return std::nullopt;
  return builder.timedProgressRemaining({.id = NotificationID::timedProgress(carried->taskId, 0),
                                         .duration = timer->remainingDuration(),
                                         .displayTitle = displayTitle(task, progress),
                                         .data = {.task = *std::move(carried), .theme = theme},
                                         .sound = settings.timerNotificationSound});
}

}  // namespace velloro
