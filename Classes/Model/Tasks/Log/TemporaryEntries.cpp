#include "Tasks/Log/TemporaryEntries.h"

#include "Foundation/Values/Try.h"
#include "OxLog/Log.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"

#include <algorithm>

namespace velloro {
namespace {

std::string description(const TaskLogEntryEntity& entry) {
  return std::string(TaskLogEntryEntity::entityName()) + " " +
         std::to_string(entry.objectID().key) + ", " +
         entry.stored(TaskLogEntryEntity::uniqueId).value_or("no identifier") + ", " +
         std::to_string(entry.stored(TaskLogEntryEntity::entryDate));
}

bool removeTwins(NSManagedObjectContext& context, const std::shared_ptr<TaskEntity>& task,
                 const UniqueID& id) {
  auto rows = TaskEntity::taskLog(context, {.uniqueIds = {id}}, *task);
  if (rows.size() < 2) return false;
  std::ranges::stable_partition(rows, [](const auto& row) { return !row->isTemporary(); });
  for (std::size_t i = 1; i < rows.size(); ++i) {
    Log::database.debug([&] { return "Removing temporary record: " + description(*rows[i]); });
    context.deleteObject(*rows[i]);
  }
  return true;
}

}  // namespace

Result<std::set<std::shared_ptr<TaskEntity>>> removeTemporaryEntries(
    NSManagedObjectContext& context, const std::shared_ptr<TaskEntity>& task) {
  const TaskLogFetchRequest request{.temporaryEntriesOnly = true};
  const auto entries = TRY(task ? task->taskLog(request)
                                : context.fetch<TaskLogEntryEntity>(request.fetchRequest()));
  std::set<std::shared_ptr<TaskEntity>> changed;
  for (const auto& entry : entries) {
    const auto id = entry->value(TaskLogEntryEntity::uniqueId);
    const auto owner = task ? task : entry->value(TaskLogEntryEntity::task);
    if (id && owner && removeTwins(context, owner, *id)) changed.insert(owner);
  }
  return changed;
}

}  // namespace velloro
