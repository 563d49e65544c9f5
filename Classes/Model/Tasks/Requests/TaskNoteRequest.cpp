#include "Tasks/Requests/TaskNoteRequest.h"

#include "Tasks/Requests/PredicateParts.h"
#include "Tasks/Rows/TaskEntity.h"

namespace velloro {
namespace {

using Request = TaskNoteEntity::Request;

void addDate(PredicateParts& parts, const Request::NoteDate& date) {
  const auto* range = std::get_if<YYYYMMDD::Range>(&date.value);
  if (range == nullptr) return parts.add("%K = %@", {"noteDate", YYYYMMDD::emptyValue});
  if (range->minDate) parts.add("%K >= %@", {"noteDate", range->minDate->intValue()});
  if (range->maxDate) parts.add("%K <= %@", {"noteDate", range->maxDate->intValue()});
}

std::vector<NSSortDescriptor> sortDescriptors(Request::SortDirection direction) {
  if (direction == Request::SortDirection::none) return {};
  const bool ascending = direction == Request::SortDirection::oldestToNewest;
  return {{"noteDate", ascending}, {"createdTimestamp", ascending}};
}

}  // namespace

NSFetchRequest TaskNoteEntity::Request::fetchRequest() const {
  PredicateParts parts;
  if (task != nullptr) parts.add("%K = %@", {"task", *task});
  if (date) addDate(parts, *date);
  if (!includeStatuses.isEmpty()) parts.add("%K IN %@", {"status", rawValuesOf(includeStatuses)});
  if (!excludeStatuses.isEmpty()) {
    parts.add("NOT (%K IN %@)", {"status", rawValuesOf(excludeStatuses)});
  }
  NSFetchRequest request{std::string(entityName())};
  request.setPredicate(std::move(parts).all());
  request.setSortDescriptors(sortDescriptors(sortDirection));
  setFetchLimit(request, limit);
  return request;
}

}  // namespace velloro
