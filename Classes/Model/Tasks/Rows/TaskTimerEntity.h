#pragma once

#include "CoreData/Model/EntityClass.h"
#include "Tasks/Columns/StoredForms.h"
#include "VelloroCore/Frequency/TaskFrequencyPeriodType.h"

namespace velloro {

class TaskEntity;

/// A running timer.
class TaskTimerEntity : public EntityClass<TaskTimerEntity> {
 public:
  inline static auto description = NSEntityDescription::of<TaskTimerEntity>();
  /// The id of the log entry that the timer writes.
  inline static const Attribute<std::optional<UniqueID>> entryId{description, "entryId"};
  // The day and the period of that entry, as it has them.
  inline static const Attribute<std::optional<YYYYMMDD>> entryDate{description, "entryDate"};
  inline static const Attribute<std::optional<YYYYMMDD>> entryPeriodFrom{description,
                                                                         "entryPeriodFrom"};
  inline static const Attribute<std::optional<YYYYMMDD>> entryPeriodTo{description,
                                                                       "entryPeriodTo"};
  inline static const Attribute<std::optional<TaskFrequencyPeriodType>> entryPeriodType{
      description, "entryPeriodType"};
  inline static const Attribute<std::optional<Date>> start{description, "start"};
  inline static const Attribute<std::optional<Date>> finish{description, "finish"};
  inline static const ToOne<TaskEntity> task{description, "task", "taskTimer"};
};

}  // namespace velloro
