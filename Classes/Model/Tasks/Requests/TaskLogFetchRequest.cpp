#include "Tasks/Requests/TaskLogFetchRequest.h"

#include "Tasks/Requests/RequestOf.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"

namespace velloro {
namespace {

using Columns = TaskLogEntryEntity;
using Entries = Predicate<TaskLogEntryEntity>;

/// A day of a request is a constant of its query.
void addDates(std::vector<Entries>& parts, std::optional<YYYYMMDD> from,
              std::optional<YYYYMMDD> to) {
  if (from && from == to) {
    parts.push_back(Columns::entryDate == constant(*from));
    return;
  }
  if (from) parts.push_back(Columns::entryDate >= constant(*from));
  if (to) parts.push_back(Columns::entryDate <= constant(*to));
}

std::vector<SortDescriptor<Columns>> order(TaskLogFetchRequest::Direction direction) {
  switch (direction) {
    case TaskLogFetchRequest::Direction::newestToOldest:
      return {Columns::entryDate.descending(), Columns::createdTimestamp.descending()};
    case TaskLogFetchRequest::Direction::oldestToNewest:
      return {Columns::entryDate.ascending(), Columns::createdTimestamp.ascending()};
    case TaskLogFetchRequest::Direction::none:
      break;
  }
  return {};
}

}  // namespace

NSFetchRequest TaskLogFetchRequest::fetchRequest(const TaskEntity* task) const {
  std::vector<Entries> parts;
  if (task != nullptr) parts.push_back(Columns::task == *task);
  if (!uniqueIds.empty()) parts.push_back(Columns::uniqueId.in(uniqueIds));
  addDates(parts, minDate, maxDate);
  if (!includeStatuses.isEmpty()) {
    parts.push_back(Columns::entryType.in(includeStatuses));
  }
  if (!excludeStatuses.isEmpty()) {
    parts.push_back(!Columns::entryType.in(excludeStatuses));
  }
  if (temporaryEntriesOnly) {
    parts.push_back(Columns::cloudStatus == Columns::temporaryRecordIdentifier);
  }
  if (madeSince) parts.push_back(Columns::createdTimestamp >= *madeSince);
  return requestOf(parts, order(direction), fetchLimit);
}

}  // namespace velloro
