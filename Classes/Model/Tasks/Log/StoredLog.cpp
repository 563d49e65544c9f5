#include "Tasks/Log/StoredLog.h"

#include "Tasks/Log/StoredEntries.h"
#include "Tasks/Log/TaskOutlook.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace velloro {
namespace {

using Columns = TaskLogEntryEntity;

TaskLogRow rowOf(const TaskLogEntryEntity& entry) {
  const std::string* zone = entry.text(Columns::createdTimeZone);
  return {.entryDate = entry.stored(Columns::entryDate),
          .entryPeriodFrom = entry.stored(Columns::entryPeriodFrom),
          .entryPeriodTo = entry.stored(Columns::entryPeriodTo),
          .entryType = entry.stored(Columns::entryType),
          .entryPeriodType = entry.value(Columns::entryPeriodType),
          .progress = entry.value(Columns::progress),
          .progressTotal = entry.value(Columns::progressTotal),
          .createdTimestamp = entry.value(Columns::createdTimestamp),
          .createdTimeZone = zone != nullptr ? std::string_view(*zone) : std::string_view()};
}

/// What to fetch for as many entries as are wanted when some will be withdrawn.
TaskLogFetchRequest storedPart(const TaskLogFetchRequest& request, const TaskEntity& task) {
  TaskLogFetchRequest stored = request;
  if (stored.fetchLimit && task.outlook() != nullptr) {
    *stored.fetchLimit += std::ssize(task.outlook()->withdrawn);
  }
  return stored;
}

bool isWanted(const TaskLogRow& row, const TaskLogFetchRequest& request) {
  return (!request.minDate || row.entryDate >= request.minDate->intValue()) &&
         (!request.maxDate || row.entryDate <= request.maxDate->intValue()) &&
         (request.includeStatuses.isEmpty() || request.includeStatuses.contains(row.type()));
}

bool isNewer(const TaskLogRow& a, const TaskLogRow& b) {
  return std::tie(a.entryDate, a.createdTimestamp) > std::tie(b.entryDate, b.createdTimestamp);
}

}  // namespace

StoredLog::StoredLog(const TaskEntity& task, const TaskLogFetchRequest& request)
    : entries_(entriesOrNone(task, storedPart(request, task))) {
  rows_.reserve(entries_.size());
  const TaskOutlook* outlook = task.outlook();
  for (const auto& entry : entries_) {
    const bool isGone = entry->isDeleted() || (outlook != nullptr && outlook->withdraws(*entry));
    if (!isGone) rows_.push_back(rowOf(*entry));
  }
  if (outlook == nullptr) return;
  std::ranges::copy_if(outlook->added, std::back_inserter(rows_),
                       [&](const TaskLogRow& row) { return isWanted(row, request); });
  std::ranges::stable_sort(rows_, isNewer);
}

}  // namespace velloro
