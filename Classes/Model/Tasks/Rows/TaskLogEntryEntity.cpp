#include "Tasks/Rows/TaskLogEntryEntity.h"

#include "Tasks/Columns/StoredValues.h"

namespace velloro {

bool TaskLogEntryEntity::isTemporary() const {
  const std::string* stored = text(cloudStatus);
  return stored != nullptr && *stored == temporaryRecordIdentifier;
}

std::optional<UniqueID> TaskLogEntryEntity::entryUniqueId() const {
  return storedUniqueID(text(uniqueId));
}

std::optional<TaskLogEntryType> TaskLogEntryEntity::logEntryType() const {
  return fromRawValue<TaskLogEntryType>(value(entryType));
}

std::optional<TaskLogEntryPeriod> TaskLogEntryEntity::period() const {
  return TaskLogEntryPeriod::fromStored(
      enumValue<TaskFrequencyPeriodType>(entryPeriodType), YYYYMMDD::fromIntValue(value(entryDate)),
      YYYYMMDD::fromIntValue(value(entryPeriodFrom)), YYYYMMDD::fromIntValue(value(entryPeriodTo)));
}

TimeZone TaskLogEntryEntity::timeZone(std::optional<TimeZone> otherwise) const {
  if (const auto own = storedTimeZone(text(createdTimeZone))) return *own;
  return otherwise ? *otherwise : TimeZone::current();
}

}  // namespace velloro
