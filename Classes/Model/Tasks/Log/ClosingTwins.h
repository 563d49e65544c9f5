#pragma once

#include "Foundation/Values/Error.h"
#include "OxKit/Platform.h"

namespace velloro {

class TaskEntity;

/// Deletes the twins among a task's automatic entries. Two devices that close the same period write
/// the same identifier; once both have all rows, each keeps the same one of them: the one that was
/// made first, and of such as were made at one instant the first by its other columns. Provisional
/// rows and those by hand stay. Returns whether any has gone; the caller saves. Fails, and has
/// deleted nothing, when the log can't be read.
[[nodiscard]] Result<bool> removeClosingTwins(const TaskEntity& task);

}  // namespace velloro
