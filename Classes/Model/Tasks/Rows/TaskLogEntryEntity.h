#pragma once

#include "CoreData/Model/EntityClass.h"
#include "Foundation/Time/TimeZone.h"
#include "OxKit/UniqueID.h"
#include "VelloroCore/Log/TaskLogEntryPeriod.h"
#include "VelloroCore/Log/TaskLogEntryType.h"

namespace velloro {

class HealthKitRequestEntity;
class TaskEntity;

/// One entry of a task's log, the only truth about the task. Entries are read in great numbers, in
/// the order of the index.
class TaskLogEntryEntity : public EntityClass<TaskLogEntryEntity> {
 public:
  inline static auto description = NSEntityDescription::of<TaskLogEntryEntity>();
  /// Two rows may share it; see `temporaryRecordIdentifier`.
  inline static const IdentifierAttribute uniqueId{description, "uniqueId"};
  inline static const Attribute<std::int32_t> entryDate{description, "entryDate"};  ///< Day.
  inline static const Attribute<std::int16_t> entryType{description, "entryType"};
  // The period that the entry counts for: its days, and its `TaskFrequencyPeriodType`.
  inline static const Attribute<std::int32_t> entryPeriodFrom{description, "entryPeriodFrom"};
  inline static const Attribute<std::int32_t> entryPeriodTo{description, "entryPeriodTo"};
  inline static const Attribute<std::optional<std::string>> entryPeriodType{description,
                                                                            "entryPeriodType"};
  /// The entry's own amount.
  inline static const Attribute<double> progress{description, "progress"};
  /// The period's amount up to and with this entry.
  inline static const Attribute<double> progressTotal{description, "progressTotal"};
  inline static const Attribute<std::optional<Date>> createdTimestamp{description,
                                                                      "createdTimestamp"};
  inline static const Attribute<std::optional<std::string>> createdTimeZone{description,
                                                                            "createdTimeZone"};
  inline static const Attribute<std::optional<std::string>> cloudStatus{description, "cloudStatus"};
  inline static const Attribute<std::optional<Date>> cloudStatusDate{description,
                                                                     "cloudStatusDate"};
  inline static const ToOne<TaskEntity> task{description, "task", "taskEntry"};
  /// Not owned: a request waits for its own answer, whatever becomes of the entry.
  inline static const ToMany<HealthKitRequestEntity> healthKitRequests{
      description, "healthKitRequests", "taskLogEntry"};
  inline static const FetchIndex newestFirst{description,
                                             {"task", "-entryDate", "-createdTimestamp"}};

  /// The `cloudStatus` of a provisional row, which goes when another one with its id arrives.
  static constexpr const char* temporaryRecordIdentifier = "TMP";
  [[nodiscard]] bool isTemporary() const;

  /// Absent when the stored text is no identifier.
  [[nodiscard]] std::optional<UniqueID> entryUniqueId() const;
  /// Absent for a number that no type has.
  [[nodiscard]] std::optional<TaskLogEntryType> logEntryType() const;
  /// See `TaskLogEntryPeriod::fromStored`; absent without a day.
  [[nodiscard]] std::optional<TaskLogEntryPeriod> period() const;
  /// In which the entry's day and time are shown: the one that it was made in, else the given one,
  /// else the device's.
  [[nodiscard]] TimeZone timeZone(std::optional<TimeZone> otherwise = {}) const;
};

}  // namespace velloro
