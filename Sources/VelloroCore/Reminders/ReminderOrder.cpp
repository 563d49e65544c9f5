#include "VelloroCore/Reminders/ReminderOrder.h"

#include <algorithm>
#include <tuple>

namespace velloro {

bool isSameTrigger(const TaskReminder& one, const TaskReminder& other) {
  return one.trigger == other.trigger && one.daysOfWeek == other.daysOfWeek &&
         one.dayIndexesFromStart == other.dayIndexesFromStart &&
         one.dayIndexesFromFinish == other.dayIndexesFromFinish;
}

std::vector<TaskReminder> sortedByTimeOfDay(std::vector<TaskReminder> reminders,
                                            HHMMSS startOfDay) {
  std::ranges::stable_sort(reminders, {}, [&](const TaskReminder& reminder) {
    const auto& time = reminder.trigger.timeOfDay;
    return std::tuple(!time, time && *time < startOfDay, time);
  });
  return reminders;
}

}  // namespace velloro
