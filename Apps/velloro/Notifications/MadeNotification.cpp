#include "velloro/Notifications/MadeNotification.h"

#include "Foundation/Text/String.h"
#include "Host/HostStore.h"
#include "Notifications/TaskNotifications.h"

namespace velloro {
namespace {

NotificationContentBuilder::BadgeUpdate ownBadge(const TaskEntity& task,
                                                 const TaskFrequencyPeriod& period, Date now) {
  using Kind = CompletionStatus::Status::Kind;
  const auto status = task.completionStatus(period, now).status;
  return {.badge = status.kind == Kind::positiveIncomplete ? 1 : 0};
}

std::string reasonFor(const TaskEntity& task, MadeKind kind) {
  if (!task.taskUniqueId()) return "it has no identifier";
  if (kind != MadeKind::progress) return "there is nothing to say";
  return task.isTimed() ? "its time is up" : "it has no timer";
}

std::string whyNone(const TaskEntity& task, MadeKind kind) {
  return inQuotes(task.title()) + ": no " + std::string(rawValue(kind)) +
         " notification: " + reasonFor(task, kind);
}

}  // namespace

NotificationContent madeNotification(const TaskEntity& task, MadeKind kind, YYYYMMDD day, Date now,
                                     FunctionRef<std::uint64_t()> random) {
  const TaskNotifications notifications{.builder = {.now = now}};
  const auto period = task.frequency().period(day, task.firstDayOfWeek()).period;
  const auto made = [&]() -> std::optional<NotificationContent> {
    switch (kind) {
      case MadeKind::reminder: {
        const Date start = day.startOfDay(task.startOfDay(), task.taskCurrentTimeZone());
        TaskNotifications::Reminder reminder{
            .id = NotificationID::reminder(day, task.uniqueId(), 0), .day = day};
        if (start > now) reminder.trigger = NotificationTrigger{start};
        return notifications.reminder(task, reminder, random);
      }
      case MadeKind::completion:
        return notifications.completion(task, period);
      case MadeKind::progress:
        return notifications.timedProgress(task, period);
      case MadeKind::badge:
        break;
    }
    return notifications.builder.badge(ownBadge(task, period, now), 0);
  }();
  if (made) return *made;
  throw HostError(whyNone(task, kind));
}

}  // namespace velloro
