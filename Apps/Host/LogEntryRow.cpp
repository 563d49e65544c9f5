#include "Host/LogEntryRow.h"

#include "Tasks/Rows/TaskEntity.h"

namespace velloro {

std::shared_ptr<TaskLogEntryEntity> LogEntryRow::insert(TaskEntity& task) const {
  auto entry = TaskLogEntryEntity::create(*task.managedObjectContext());
  entry->setValue(TaskLogEntryEntity::task,
                  std::static_pointer_cast<TaskEntity>(task.shared_from_this()));
  write(*entry, task);
  return entry;
}

void LogEntryRow::write(TaskLogEntryEntity& entry, const TaskEntity& task) const {
  using Entry = TaskLogEntryEntity;
  entry.writeValue(Entry::uniqueId, id);
  entry.writeValue(Entry::entryDate, date);
  entry.writeValue(Entry::entryType, step.type);
  entry.writeValue(Entry::entryPeriodFrom, period.startDate);
  entry.writeValue(Entry::entryPeriodTo, period.finishDate);
  entry.writeValue(Entry::entryPeriodType, period.periodType);
  entry.writeValue(Entry::progress, step.amount);
  entry.writeValue(Entry::progressTotal, total);
  entry.writeValue(Entry::createdTimestamp, at);
  entry.writeValue(Entry::createdTimeZone, task.taskCurrentTimeZone());
}

}  // namespace velloro
