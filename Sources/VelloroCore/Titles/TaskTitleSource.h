#pragma once

#include "VelloroCore/Progress/TaskProgress.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <optional>
#include <string>

namespace velloro {

/// What the title of a task is built of.
///
///     const TaskProgress timer = TaskProgressTimer{
///         .period = today, .totalTargetDuration = 600, .currentCompletionDuration = 590};
///     const TaskTitleSource reading{.title = "Read", .isTimed = true, .progress = timer};
///     TaskDisplayTitle::build(reading, locale)
///         .localizedTitle(TaskDisplayTitle::Context::iPhoneInlineTaskTitle, locale);
///         // "Read 00:10"
struct TaskTitleSource {
  std::string title = {};  ///< Empty for none.
  std::optional<AutomaticTaskType> automaticTaskType = {};
  bool isNegative = false;  ///< The task is to stay below its target.
  bool isTimed = false;
  /// Absent where none is known; the title then has the target.
  std::optional<TaskProgress> progress = {};
  Date now = {};  ///< By which a progress that follows the clock is read.
};

}  // namespace velloro
