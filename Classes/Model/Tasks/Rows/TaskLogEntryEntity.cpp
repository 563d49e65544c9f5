#include "Tasks/Rows/TaskLogEntryEntity.h"

namespace velloro {

bool TaskLogEntryEntity::isTemporary() const {
  const std::string* stored = text(cloudStatus);
  return stored != nullptr && *stored == temporaryRecordIdentifier;
}

std::optional<TaskLogEntryPeriod> TaskLogEntryEntity::period() const {
  return TaskLogEntryPeriod::fromStored(value(entryPeriodType), value(entryDate),
                                        value(entryPeriodFrom), value(entryPeriodTo));
}

TimeZone TaskLogEntryEntity::timeZone(std::optional<TimeZone> otherwise) const {
  if (const auto own = value(createdTimeZone)) return *own;
  return otherwise ? *otherwise : TimeZone::current();
}

bool TaskLogEntryEntity::canRead(std::size_t slot) const {
  if (slot == entryDate.slot()) return value(entryDate).has_value();
  if (slot == cloudStatus.slot()) return isTemporary() || value(cloudStatus).value_or("").empty();
  return NSManagedObject::canRead(slot);
}

}  // namespace velloro
