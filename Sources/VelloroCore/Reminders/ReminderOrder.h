#pragma once

#include "OxKit/Platform.h"
#include "VelloroCore/Reminders/TaskReminder.h"

#include <vector>

namespace velloro {

/// Whether two reminders are set off by the same on the same days, whatever else they say.
[[nodiscard]] bool isSameTrigger(const TaskReminder& one, const TaskReminder& other);

/// In the order in which they come within a logical day, then those without a time of day; of equal
/// times the given order holds. In a day that begins at 04:00, 01:00 is the last.
[[nodiscard]] std::vector<TaskReminder> sortedByTimeOfDay(std::vector<TaskReminder> reminders,
                                                          HHMMSS startOfDay);

}  // namespace velloro
