#pragma once

#include "OxKit/Platform.h"
#include "UserNotifications/UNNotificationContent.h"

namespace velloro {

class TaskEntity;
struct TaskFrequencyPeriod;

/// What a reminder of the task says in a period, and carries for who draws it: see
/// `NotificationData`; drawn in the theme that the user has chosen for its page. Without an
/// identifier a task has no record, and its reminder text alone.
[[nodiscard]] UNNotificationContent reminderContent(const TaskEntity& task,
                                                    const TaskFrequencyPeriod& period, Date now);

}  // namespace velloro
