#include "Tasks/Requests/TaskLogFetchRequest.h"

#include "Tasks/Requests/PredicateParts.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"

namespace velloro {
namespace {

/// The number stands in the format itself: a day of a request is a constant of its query.
void addDates(PredicateParts& parts, std::optional<YYYYMMDD> from, std::optional<YYYYMMDD> to) {
  const auto add = [&](const char* comparison, YYYYMMDD date) {
    parts.add(comparison + std::to_string(date.intValue()), {"entryDate"});
  };
  if (from && from == to) return add("%K = ", *from);
  if (from) add("%K >= ", *from);
  if (to) add("%K <= ", *to);
}

std::vector<NSSortDescriptor> sortDescriptors(TaskLogFetchRequest::Direction direction) {
  if (direction == TaskLogFetchRequest::Direction::none) return {};
  const bool ascending = direction == TaskLogFetchRequest::Direction::oldestToNewest;
  return {{"entryDate", ascending}, {"createdTimestamp", ascending}};
}

}  // namespace

NSFetchRequest TaskLogFetchRequest::fetchRequest(const TaskEntity* task) const {
  PredicateParts parts;
  if (task != nullptr) parts.add("%K = %@", {"task", *task});
  if (!uniqueIds.empty()) parts.add("%K IN %@", {"uniqueId", textsOf(uniqueIds)});
  addDates(parts, minDate, maxDate);
  if (!includeStatuses.isEmpty()) {
    parts.add("%K IN %@", {"entryType", rawValuesOf(includeStatuses)});
  }
  if (!excludeStatuses.isEmpty()) {
    parts.add("NOT (%K IN %@)", {"entryType", rawValuesOf(excludeStatuses)});
  }
  if (temporaryEntriesOnly) {
    parts.add("%K = %@", {"cloudStatus", TaskLogEntryEntity::temporaryRecordIdentifier});
  }
  NSFetchRequest request{std::string(TaskLogEntryEntity::entityName())};
  request.setPredicate(std::move(parts).all());
  request.setSortDescriptors(sortDescriptors(direction));
  setFetchLimit(request, fetchLimit);
  return request;
}

}  // namespace velloro
