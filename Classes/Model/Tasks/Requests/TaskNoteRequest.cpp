#include "Tasks/Requests/TaskNoteRequest.h"

#include "Tasks/Requests/RequestOf.h"
#include "Tasks/Rows/TaskEntity.h"

namespace velloro {
namespace {

using Columns = TaskNoteEntity;
using Notes = Predicate<TaskNoteEntity>;
using Request = TaskNoteEntity::Request;

void addDate(std::vector<Notes>& parts, const Request::NoteDate& date) {
  const auto* range = std::get_if<YYYYMMDD::Range>(&date.value);
  if (range == nullptr) {
    parts.push_back(Columns::noteDate == std::nullopt);
    return;
  }
  if (range->minDate) parts.push_back(Columns::noteDate >= *range->minDate);
  if (range->maxDate) parts.push_back(Columns::noteDate <= *range->maxDate);
}

std::vector<SortDescriptor<Columns>> order(Request::SortDirection direction) {
  switch (direction) {
    case Request::SortDirection::newestToOldest:
      return {Columns::noteDate.descending(), Columns::createdTimestamp.descending()};
    case Request::SortDirection::oldestToNewest:
      return {Columns::noteDate.ascending(), Columns::createdTimestamp.ascending()};
    case Request::SortDirection::none:
      break;
  }
  return {};
}

}  // namespace

NSFetchRequest TaskNoteEntity::Request::fetchRequest() const {
  std::vector<Notes> parts;
  if (task != nullptr) parts.push_back(Columns::task == *task);
  if (date) addDate(parts, *date);
  if (!includeStatuses.isEmpty()) {
    parts.push_back(Columns::status.in(includeStatuses));
  }
  if (!excludeStatuses.isEmpty()) {
    parts.push_back(!Columns::status.in(excludeStatuses));
  }
  return requestOf(parts, order(sortDirection), limit);
}

}  // namespace velloro
