#include "Tasks/Log/StoredLog.h"

#include "CoreData/Context/NSManagedObjectContext.h"
#include "CoreData/Context/NSManagedRow.h"
#include "OxLog/Log.h"
#include "Tasks/Log/TaskOutlook.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace velloro {
namespace {

using Columns = TaskLogEntryEntity;

/// \param zones Keeps the zones that rows refer to. Entries mostly have the zone of the one before.
TaskLogRow rowOf(const NSManagedRow& entry, std::set<std::string>& zones,
                 const std::string*& lastZone) {
  const std::string* zone = entry.text(Columns::createdTimeZone);
  if (zone != nullptr && (lastZone == nullptr || *zone != *lastZone)) {
    lastZone = &*zones.insert(*zone).first;
  }
  return {.entryDate = entry.stored(Columns::entryDate),
          .entryPeriodFrom = entry.stored(Columns::entryPeriodFrom),
          .entryPeriodTo = entry.stored(Columns::entryPeriodTo),
          .entryType = entry.stored(Columns::entryType),
          .entryPeriodType = entry.value(Columns::entryPeriodType),
          .progress = entry.value(Columns::progress),
          .progressTotal = entry.value(Columns::progressTotal),
          .createdTimestamp = entry.value(Columns::createdTimestamp),
          .createdTimeZone = zone != nullptr ? std::string_view(*lastZone) : std::string_view()};
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

StoredLog::StoredLog(const TaskEntity& task, const TaskLogFetchRequest& request) {
  NSManagedObjectContext* context = task.managedObjectContext();
  if (context == nullptr) return;
  const TaskOutlook* outlook = task.outlook();
  const std::string* lastZone = nullptr;
  const auto read = context->readRows(
      storedPart(request, task).fetchRequest(&task),
      {Columns::entryDate.slot(), Columns::entryPeriodFrom.slot(), Columns::entryPeriodTo.slot(),
       Columns::entryType.slot(), Columns::entryPeriodType.slot(), Columns::progress.slot(),
       Columns::progressTotal.slot(), Columns::createdTimestamp.slot(),
       Columns::createdTimeZone.slot()},
      [&](const NSManagedRow& entry) {
        if (outlook != nullptr && outlook->withdraws(entry.objectID())) return;
        rows_.push_back(rowOf(entry, zones_, lastZone));
      });
  if (!read) {
    Log::database.error(read.error());
    rows_.clear();
  }
  if (outlook == nullptr) return;
  std::ranges::copy_if(outlook->added, std::back_inserter(rows_),
                       [&](const TaskLogRow& row) { return isWanted(row, request); });
  std::ranges::stable_sort(rows_, isNewer);
}

}  // namespace velloro
