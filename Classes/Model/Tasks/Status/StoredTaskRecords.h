#pragma once

#include "Tasks/Status/TaskSnapshot.h"
#include "VelloroSnapshots/ComplicationTaskSnapshot.h"
#include "VelloroSnapshots/NotificationTask.h"

namespace velloro {

/// What a notification carries of a task that stands so; absent for a task without an identifier.
[[nodiscard]] std::optional<NotificationTask> notificationTask(
    const TaskSnapshot& task, const StreakedCompletionStatus& standing);
/// What a watch gets of it, as it stands at an instant.
[[nodiscard]] ComplicationTaskSnapshot complicationTaskSnapshot(const TaskSnapshot& task,
                                                                Date date);
/// The picture of whoever shares it with the user.
[[nodiscard]] std::optional<ComplicationSnapshotDisplayRepresentation>
shareOwnerDisplayRepresentation(const TaskEntity& task);

}  // namespace velloro
