#pragma once

#include "Tasks/Rows/TaskEntity.h"
#include "VelloroCore/Appearance/TaskDisplayOrder.h"
#include "VelloroCore/Frequency/TaskFrequency.h"
#include "VelloroCore/Reminders/TaskNotificationSettings.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

namespace velloro {

// What several columns of a task hold together, or more than its own row. Only what differs from
// what is stored is written; each returns whether anything was.

/// A new status is dated now.
bool setTaskStatus(TaskEntity& task, TaskStatus status, Date now);
bool setTaskDisplayOrder(TaskEntity& task, const TaskDisplayOrder& order);
/// Days of the month are not stored.
bool setFrequency(TaskEntity& task, const TaskFrequency& frequency);
bool setAutomaticTaskType(TaskEntity& task, const std::optional<AutomaticTaskType>& type);
/// A reminder keeps its row as long as its value is wanted, under whatever identifier; one whose
/// trigger lacks what it needs gets none. Changed settings are dated now.
bool setNotificationSettings(TaskEntity& task, const TaskNotificationSettings& settings);

}  // namespace velloro
