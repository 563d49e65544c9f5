#include "DataManager/TaskDeduplicator.h"

#include "Containers/SaveIfChanged.h"
#include "DataManager/StoreUse.h"
#include "Foundation/Values/Try.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxLog/Log.h"
#include "Tasks/Log/ClosingTwins.h"
#include "Tasks/Log/TemporaryEntries.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"

#include <algorithm>
#include <ranges>
#include <set>
#include <span>
#include <vector>

namespace velloro {
namespace {

using Tasks = std::vector<std::shared_ptr<TaskEntity>>;

/// How many tasks are looked at while other writers wait.
constexpr std::size_t tasksAtOnce = 50;

bool isEntry(NSManagedObjectID id) {
  return id.entity->name() == TaskLogEntryEntity::entityName();
}

/// The tasks whose entries have come, changed or gone since then. An entry that has gone doesn't
/// tell any longer whose it was: then it is all tasks.
Result<Tasks> tasksWithChangedLogs(NSManagedObjectContext& context, Date since) {
  const auto history =
      TRY(context.execute(NSPersistentHistoryChangeRequest::fetchHistoryAfterDate(since)));
  std::set<std::shared_ptr<TaskEntity>> tasks;
  for (const NSPersistentHistoryTransaction& transaction : history.transactions) {
    if (std::ranges::any_of(transaction.deleted, isEntry)) {
      return context.fetch<TaskEntity>(NSFetchRequest::of<TaskEntity>());
    }
    for (const auto* ids : {&transaction.inserted, &transaction.updated}) {
      for (const NSManagedObjectID id : *ids | std::views::filter(isEntry)) {
        const auto entry = std::static_pointer_cast<TaskLogEntryEntity>(context.objectWithID(id));
        if (auto task = entry->value(TaskLogEntryEntity::task)) tasks.insert(std::move(task));
      }
    }
  }
  return Tasks(tasks.begin(), tasks.end());
}

Result<void> bringUpToDate(TaskEntity& task) {
  if (task.managedObjectContext() == nullptr) return {};
  TRY(removeClosingTwins(task));
  const TimeZone timeZone = task.taskCurrentTimeZone();
  const Date now = Date::now();
  task.updateTemporalData(YYYYMMDD::today(task.startOfDay(), timeZone, now), timeZone, now);
  return {};
}

}  // namespace

bool TaskDeduplicator::run(NSManagedObjectContext& context, Date since) const {
  const auto access = StoreUse::toWrite();
  if (!access) {
    Log::dataManager.error(access.error());
    return false;
  }
  Tasks tasks;
  const bool isKnown = performTransaction(context, [&]() -> Result<void> {
    auto changed = TRY(removeTemporaryEntries(context));
    auto others = TRY(tasksWithChangedLogs(context, since));
    changed.insert(others.begin(), others.end());
    tasks.assign(changed.begin(), changed.end());
    return {};
  });
  if (!isKnown) return false;
  for (std::span<const std::shared_ptr<TaskEntity>> left = tasks; !left.empty();) {
    const auto some = left.first(std::min(left.size(), tasksAtOnce));
    left = left.subspan(some.size());
    const bool isDone = performTransaction(context, [&]() -> Result<void> {
      for (const auto& task : some) {
        TRY(bringUpToDate(*task));
      }
      return {};
    });
    if (!isDone) return false;
  }
  return true;
}

}  // namespace velloro
