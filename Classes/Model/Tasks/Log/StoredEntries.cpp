#include "Tasks/Log/StoredEntries.h"

#include "CoreData/Context/NSManagedObjectContext.h"
#include "OxLog/Log.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Requests/TaskNoteRequest.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"

namespace velloro {

using Entries = TaskEntity::Entries;
using Note = ComplicationTaskNoteSnapshot;
using NoteRequest = TaskNoteEntity::Request;

namespace {

Entries orNone(Result<Entries> entries) {
  if (entries) return *std::move(entries);
  Log::database.error(entries.error());
  return {};
}

/// Those that can be shown.
std::vector<Note> snapshots(NSManagedObjectContext* context, const NoteRequest& request) {
  if (context == nullptr) return {};
  const auto notes = context->fetch<TaskNoteEntity>(request.fetchRequest());
  if (!notes) {
    Log::database.error(notes.error());
    return {};
  }
  std::vector<Note> result;
  for (const auto& note : *notes) {
    if (auto snapshot = note->snapshot()) result.push_back(*std::move(snapshot));
  }
  return result;
}

}  // namespace

Result<Entries> TaskEntity::taskLog(const TaskLogFetchRequest& request) const {
  NSManagedObjectContext* context = managedObjectContext();
  if (context == nullptr) {
    Log::database.error([] { return "No context, returning empty array"; });
    return Entries();
  }
  return context->fetch<TaskLogEntryEntity>(request.fetchRequest(this));
}

Entries TaskEntity::taskLog(NSManagedObjectContext& context, const TaskLogFetchRequest& request,
                            const TaskEntity& task) {
  return orNone(context.fetch<TaskLogEntryEntity>(request.fetchRequest(&task)));
}

Entries entriesOrNone(const TaskEntity& task, const TaskLogFetchRequest& request) {
  return orNone(task.taskLog(request));
}

std::vector<Note> TaskEntity::notes(YYYYMMDD date) const {
  return snapshots(managedObjectContext(),
                   {.task = this,
                    .date = NoteRequest::NoteDate::range({.minDate = date, .maxDate = date}),
                    .excludeStatuses = {TaskNoteStatus::trashed},
                    .sortDirection = NoteRequest::SortDirection::oldestToNewest});
}

std::optional<Note> TaskEntity::pinnedNote() const {
  auto notes = snapshots(managedObjectContext(),
                         {.task = this,
                          .includeStatuses = {TaskNoteStatus::pinned},
                          .excludeStatuses = {TaskNoteStatus::trashed},
                          .sortDirection = NoteRequest::SortDirection::newestToOldest,
                          .limit = 1});
  return notes.empty() ? std::nullopt : std::optional(std::move(notes.front()));
}

std::optional<UniqueID> TaskEntity::currentUndoableEntry(
    const std::optional<TaskFrequencyPeriod>& period) const {
  const auto entries =
      entriesOrNone(*this, {.direction = TaskLogFetchRequest::Direction::newestToOldest,
                            .minDate = period ? std::optional(period->startDate) : std::nullopt,
                            .maxDate = period ? std::optional(period->finishDate) : std::nullopt,
                            .fetchLimit = 1,
                            .includeStatuses = TaskLogEntryTypes::allManualTypes});
  return entries.empty() ? std::nullopt : entries.front()->value(TaskLogEntryEntity::uniqueId);
}

}  // namespace velloro
