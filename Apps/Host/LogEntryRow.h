#pragma once

#include "Foundation/Time/Date.h"
#include "OxKit/UniqueID.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "VelloroCore/Frequency/TaskFrequencyPeriod.h"
#include "VelloroCore/Log/LogEntryRules.h"

namespace velloro {

/// The columns of an entry that the host writes.
struct LogEntryRow {
  UniqueID id;
  const TaskFrequencyPeriod& period;
  YYYYMMDD date = {};
  Date at;  ///< When it is made.
  LogStep step = {};
  double total = 0;  ///< Of the period, up to and including this entry.

  /// Into a new row of the task.
  [[nodiscard]] std::shared_ptr<TaskLogEntryEntity> insert(TaskEntity& task) const;
  /// Into an existing row.
  void write(TaskLogEntryEntity& entry, const TaskEntity& task) const;
};

}  // namespace velloro
