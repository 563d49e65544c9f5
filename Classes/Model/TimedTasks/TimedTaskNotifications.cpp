#include "TimedTasks/TimedTaskNotifications.h"

#include "Notifications/TaskNotifications.h"
#include "Settings/Settings.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Status/StoredTaskRecords.h"
#include "Tasks/Status/StoredTaskStatus.h"
#include "UserNotifications/UNUserNotificationCenter.h"

#include <algorithm>
#include <iterator>

namespace velloro {
namespace {

/// That of the task's page, in the mode for dark screens where the mode follows the screen's.
PositionedTheme themeOf(const TaskEntity& task) {
  const Settings& settings = Settings::shared();
  const TaskDisplayOrder order = task.taskDisplayOrder();
  const Theme theme = settings.theme(order.pageNumber);
  const auto dark = settings.themeAutoSwitch() ? settings.themeAutoSwitchDarkMode() : std::nullopt;
  return (dark ? theme.withMode(*dark) : theme).positioned(order);
}

bool isStepOnTheWay(const TaskNotifications& notifications, const TaskFrequencyPeriod& period) {
  const TaskProgress next = notifications.task.standing.progress(period).nextProgress();
  return next.numCompletions(notifications.builder.now) < next.expectedCompletions();
}

std::optional<NotificationContent> completionOf(const TaskNotifications& notifications,
                                                const TimedTaskManagerEntry& run) {
  const TaskNotificationSettings& settings = notifications.settings;
  const bool isPartial = isStepOnTheWay(notifications, run.period.period);
  const bool isWanted = isPartial ? settings.partiallyCompletedNotification.value_or(false)
                                  : settings.completedNotification;
  if (!isWanted) return std::nullopt;
  auto content = notifications.completion(run.period.period);
  if (!content) return std::nullopt;
  const auto& timeSensitive = isPartial ? settings.partiallyCompletedNotificationIsTimeSensitive
                                        : settings.completedNotificationIsTimeSensitive;
  // Today's, if the period is under way, while the run may have begun on an earlier day of it.
  content->notificationId = NotificationID::completion(run.period.date, run.taskIdentifier);
  content->trigger = NotificationTrigger{run.end};
  content->timeSensitive = timeSensitive.value_or(false);
  return content;
}

/// A run may be the rest of a completion of which a part was done before.
TimeInterval durationOfCompletion(const TaskNotifications& notifications,
                                  const TimedTaskManagerEntry& run) {
  const TaskProgress progress = notifications.task.standing.progress(run.period.period);
  const auto* timer = progress.as<TaskProgressTimer>();
  const TimeInterval duration = timer != nullptr ? timer->durationPerCompletion() : 0;
  return std::max(duration, run.end.timeIntervalSince(run.start));
}

std::vector<NotificationContent> progressOf(const TaskNotifications& notifications,
                                            const TimedTaskManagerEntry& run) {
  const TaskNotificationSettings& settings = notifications.settings;
  const auto times = settings.sortedPendingTimerReminderTimes(
      durationOfCompletion(notifications, run), run.end, notifications.builder.now);
  std::vector<NotificationContent> contents;
  if (times.empty()) return contents;
  const auto status = streakedCompletionStatus(notifications.task, run.period.period);
  const auto carried = notificationTask(notifications.task, status);
  if (!carried) return contents;
  for (const TimerReminderTime& time : times) {
    const NotificationContentBuilder::TimedProgress progress{
        .id = NotificationID::timedProgress(carried->taskId, contents.size()),
        .duration = time.duration,
        .displayTitle = carried->displayTitle,
        .data = {.task = *carried, .theme = notifications.theme},
        .sound = settings.timerNotificationSound,
        .trigger = NotificationTrigger{time.date},
        .timeSensitive = settings.timerNotificationsAreTimeSensitive.value_or(false)};
    contents.push_back(time.type == TimerReminderType::completed
                           ? notifications.builder.timedProgressCompleted(progress)
                           : notifications.builder.timedProgressRemaining(progress));
  }
  return contents;
}

}  // namespace

std::vector<NotificationContent> timedTaskNotifications(const TaskEntity& task,
                                                        const TimedTaskManagerEntry& run,
                                                        Date now) {
  auto notifications = TaskNotifications::of(task, {.now = now});
  notifications.theme = themeOf(task);
  std::vector<NotificationContent> contents;
  if (auto end = completionOf(notifications, run)) contents.push_back(*std::move(end));
  std::ranges::move(progressOf(notifications, run), std::back_inserter(contents));
  return contents;
}

std::vector<NotificationID> timedTaskNotificationIDs(const TaskEntity& task,
                                                     const DatedPeriod& period) {
  const auto id = task.taskUniqueId();
  if (!id) return {};
  std::vector<NotificationID> ids = {NotificationID::completion(period.date, *id)};
  const std::size_t reminders = task.notificationSettings().sortedTimerReminders().size();
  for (std::size_t i = 0; i < reminders; ++i) ids.push_back(NotificationID::timedProgress(*id, i));
  return ids;
}

void cancelTimedTaskNotifications(const TaskEntity& task, const DatedPeriod& period,
                                  Block completion) {
  std::vector<std::string> identifiers;
  for (const auto& id : timedTaskNotificationIDs(task, period)) identifiers.push_back(id.str);
  auto center = UNUserNotificationCenter::currentNotificationCenter();
  center.removePendingNotificationRequestsWithIdentifiers(identifiers);
  center.flush();
  completion();
}

}  // namespace velloro
