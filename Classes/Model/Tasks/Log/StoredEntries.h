#pragma once

#include "Tasks/Rows/TaskEntity.h"

namespace velloro {

/// `TaskEntity::taskLog` without fail: an error is logged, and there are no entries.
[[nodiscard]] TaskEntity::Entries entriesOrNone(const TaskEntity& task,
                                                const TaskLogFetchRequest& request);

}  // namespace velloro
