#include "Tasks/StoredLog.h"

#include "Tasks/TaskLogEntryEntity.h"
#include "Tasks/TaskLogFetchRequest.h"

namespace velloro {
namespace {

using Columns = TaskLogEntryEntity;

TaskLogRow rowOf(const TaskLogEntryEntity& entry) {
  const std::string* zone = entry.text(Columns::createdTimeZone);
  return {.entryDate = entry.value(Columns::entryDate),
          .entryPeriodFrom = entry.value(Columns::entryPeriodFrom),
          .entryPeriodTo = entry.value(Columns::entryPeriodTo),
          .entryType = entry.value(Columns::entryType),
          .entryPeriodType = entry.enumValue<TaskFrequencyPeriodType>(Columns::entryPeriodType),
          .progressTotal = entry.value(Columns::progressTotal),
          .createdTimestamp = entry.value(Columns::createdTimestamp),
          .createdTimeZone = zone != nullptr ? std::string_view(*zone) : std::string_view()};
}

}  // namespace

StoredLog::StoredLog(const TaskEntity& task, const TaskLogFetchRequest& request)
    : entries_(task.entriesOrNone(request)) {
  rows_.reserve(entries_.size());
  for (const auto& entry : entries_) {
    if (!entry->isDeleted()) rows_.push_back(rowOf(*entry));
  }
}

}  // namespace velloro
