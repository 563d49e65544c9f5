#include "velloro/Notifications/MadeNotification.h"

#include "Foundation/Text/String.h"
#include "Host/HostStore.h"
#include "Notifications/TaskNotifications.h"
#include "Tasks/Rows/TaskEntity.h"

namespace velloro {
namespace {

NotificationContentBuilder::BadgeUpdate ownBadge(const CompletionStatus& status) {
  using Kind = CompletionStatus::Status::Kind;
  return {.badge = status.status.kind == Kind::positiveIncomplete ? 1 : 0};
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
  const auto notifications = TaskNotifications::of(task, {.now = now});
  const auto standing = notifications.day(day);
  const TaskFrequencyPeriod& period = standing.period.period;
  const auto made = [&]() -> std::optional<NotificationContent> {
    switch (kind) {
      case MadeKind::reminder: {
        const TaskStanding& rules = notifications.task.standing;
        const Date start = day.startOfDay(rules.startOfDay, rules.timeZone);
        TaskNotifications::Reminder reminder{.id =
                                                 NotificationID::reminder(day, task.uniqueId(), 0)};
        if (start > now) reminder.trigger = NotificationTrigger{start};
        return notifications.reminder(standing, reminder, random);
      }
      case MadeKind::completion:
        return notifications.completion(period);
      case MadeKind::progress:
        return notifications.timedProgress(period);
      case MadeKind::badge:
        break;
    }
    return notifications.builder.badge(ownBadge(standing.status.completionStatus), 0);
  }();
  if (made) return *made;
  throw HostError(whyNone(task, kind));
}

}  // namespace velloro
