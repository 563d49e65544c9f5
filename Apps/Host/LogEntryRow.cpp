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
  entry.writeValue(Entry::uniqueId, id.stringValue());
  entry.writeValue(Entry::entryDate, static_cast<std::int32_t>(date.intValue()));
  entry.writeValue(Entry::entryType, static_cast<std::int16_t>(rawValue(step.type)));
  entry.writeValue(Entry::entryPeriodFrom, static_cast<std::int32_t>(period.startDate.intValue()));
  entry.writeValue(Entry::entryPeriodTo, static_cast<std::int32_t>(period.finishDate.intValue()));
  entry.writeValue(Entry::entryPeriodType, std::string(rawValue(period.periodType)));
  entry.writeValue(Entry::progress, step.amount);
  entry.writeValue(Entry::progressTotal, total);
  entry.writeValue(Entry::createdTimestamp, at);
  entry.writeValue(Entry::createdTimeZone, std::string(task.taskCurrentTimeZone().identifier()));
}

}  // namespace velloro
