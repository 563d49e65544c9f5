#pragma once

#include "Foundation/Dispatch/Block.h"
#include "Notifications/NotificationContent.h"
#include "VelloroCore/Progress/TimedTaskManagerEntry.h"

#include <vector>

namespace velloro {

class TaskEntity;

/// The notifications of a run, from now on: the notice at its end, if the task's settings ask for
/// it, and those on the way. They are scheduled at its start, and arrive whether or not a process
/// is there. None for a task without an identifier.
[[nodiscard]] std::vector<NotificationContent> timedTaskNotifications(
    const TaskEntity& task, const TimedTaskManagerEntry& run, Date now);

/// The identifiers that the notifications of a run in a period can have.
[[nodiscard]] std::vector<NotificationID> timedTaskNotificationIDs(const TaskEntity& task,
                                                                   const DatedPeriod& period);

/// Removes the pending notifications of the task's run. On the queue of the task.
void cancelTimedTaskNotifications(const TaskEntity& task, const DatedPeriod& period,
                                  Block completion);

}  // namespace velloro
