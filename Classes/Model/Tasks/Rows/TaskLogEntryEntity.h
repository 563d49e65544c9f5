#pragma once

#include "CoreData/Model/EntityClass.h"
#include "Foundation/Time/TimeZone.h"
#include "Tasks/Columns/StoredForms.h"
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
  inline static const Attribute<std::optional<UniqueID>> uniqueId{description, "uniqueId"};
  inline static const Attribute<std::optional<YYYYMMDD>> entryDate{description, "entryDate"};
  inline static const Attribute<std::optional<TaskLogEntryType>> entryType{description,
                                                                           "entryType"};
  // The period that the entry counts for.
  inline static const Attribute<std::optional<YYYYMMDD>> entryPeriodFrom{description,
                                                                         "entryPeriodFrom"};
  inline static const Attribute<std::optional<YYYYMMDD>> entryPeriodTo{description,
                                                                       "entryPeriodTo"};
  inline static const Attribute<std::optional<TaskFrequencyPeriodType>> entryPeriodType{
      description, "entryPeriodType"};
  /// The entry's own amount.
  inline static const Attribute<double> progress{description, "progress"};
  /// The period's amount up to and with this entry.
  inline static const Attribute<double> progressTotal{description, "progressTotal"};
  inline static const Attribute<std::optional<Date>> createdTimestamp{description,
                                                                      "createdTimestamp"};
  inline static const Attribute<std::optional<TimeZone>> createdTimeZone{description,
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
  /// See `TaskLogEntryPeriod::fromStored`; absent without a day.
  [[nodiscard]] std::optional<TaskLogEntryPeriod> period() const;
  /// In which the entry's day and time are shown: the one that it was made in, else the given one,
  /// else the device's.
  [[nodiscard]] TimeZone timeZone(std::optional<TimeZone> otherwise = {}) const;

  /// An entry must have a day, and but for a provisional one no cloud status.
  [[nodiscard]] bool canRead(std::size_t slot) const override;
};

}  // namespace velloro
