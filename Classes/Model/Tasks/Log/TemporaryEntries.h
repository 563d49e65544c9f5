#pragma once

#include "CoreData/Context/NSManagedObjectContext.h"
#include "OxKit/Platform.h"

#include <memory>
#include <set>

namespace velloro {

class TaskEntity;

/// Deletes the provisional entries (`TaskLogEntryEntity::temporaryRecordIdentifier`) of a task, or
/// of all tasks, whose twin has arrived: another entry of the task with the same identifier. Of
/// such rows one stays, one that is not provisional if there is one; a provisional row that stands
/// alone stays. Returns the tasks whose logs have changed; the caller saves.
///
/// \param task Null for all tasks.
/// Fails, and has deleted nothing, when the provisional entries can't be fetched.
[[nodiscard]] Result<std::set<std::shared_ptr<TaskEntity>>> removeTemporaryEntries(
    NSManagedObjectContext& context, const std::shared_ptr<TaskEntity>& task = nullptr);

}  // namespace velloro
