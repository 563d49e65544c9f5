#pragma once

#include "Tasks/TaskEntity.h"
#include "UserNotifications/UNNotificationContent.h"

namespace velloro {

/// What a reminder of the task says in a period, and carries for who draws it: see
/// `NotificationData`. Without an identifier a task has no record, and its reminder text alone.
[[nodiscard]] UNNotificationContent reminderContent(const TaskEntity& task,
                                                    const TaskFrequencyPeriod& period);

}  // namespace velloro
