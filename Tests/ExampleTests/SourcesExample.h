#pragma once

#include "ExampleTests/Example.h"
#include "OxCheckableTasks/Icons/IconManagerIconCases.h"
#include "Support/SampleTasks.h"
#include "VelloroCore/Log/TaskLogWalk.h"

namespace velloro {

/// A task, the current period of a daily one, and its log.
class SourcesExample : public Example {
 protected:
  static TaskLogRow row(std::int32_t day, TaskLogEntryType type) {
    return {.entryDate = day,
            .entryPeriodFrom = day,
            .entryPeriodTo = day,
            .entryType = static_cast<std::int16_t>(rawValue(type)),
            .entryPeriodType = TaskFrequencyPeriodType::day};
  }

  const NotificationTask task = fullSampleTask();
  const DatedPeriod today = sampleDay();
  const TaskLogRules rules{.timeZone = berlin, .now = now};
  const std::vector<TaskLogRow> rows{row(20240307, TaskLogEntryType::completedManuallyFull),
                                     row(20240306, TaskLogEntryType::skippedManuallyFull),
                                     row(20240305, TaskLogEntryType::completedManuallyFull),
                                     row(20240304, TaskLogEntryType::missedManuallyFull),
                                     row(20240303, TaskLogEntryType::completedManuallyFull)};
};

}  // namespace velloro
