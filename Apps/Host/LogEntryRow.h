#pragma once

#include "Foundation/Time/Date.h"
#include "OxKit/UniqueID.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "VelloroCore/Frequency/TaskFrequencyPeriod.h"
#include "VelloroCore/Log/LogEntryRules.h"

namespace velloro {

/// What the host writes of an entry, in the form in which it is stored.
struct LogEntryRow {
  UniqueID id;
  const TaskFrequencyPeriod& period;
  YYYYMMDD date = {};
  Date at;  ///< When it is made.
  LogStep step = {};
  double total = 0;  ///< Of the period, up to and with it.

  /// Into a new row of the task.
  [[nodiscard]] std::shared_ptr<TaskLogEntryEntity> insert(TaskEntity& task) const;
  /// Into a row that is there.
  void write(TaskLogEntryEntity& entry, const TaskEntity& task) const;
};

}  // namespace velloro
