#include "VelloroTaskShare/TaskCloudSummary.h"

#include "Foundation/Values/Hasher.h"
#include "VelloroCore/Reminders/AutomaticTimes.h"

namespace velloro {

std::vector<TaskCloudSummary::Entry> task_cloud_summary::History::unsortedPeriods() const {
  std::vector<Entry> periods = multi;
  for (const auto& [day, entry] : single) periods.push_back(entry);
  return periods;
}

std::vector<AutomaticTime> TaskCloudSummary::ownersTimes() const {
  std::vector<AutomaticTime> all;
  if (!notificationSettings) return all;
  for (const ReminderTime& each : notificationSettings->automaticTimes) {
    for (const HHMMSS& stored : each.times) {
      const auto time = HHMMSS::fromIntValue(stored.intValue());
      if (!time) continue;
      all.push_back({.time = *time,
                     .source = AutomaticTimeSource::owner,
                     .days = each.days.value_or(everyDay()),
                     .dayIndexesFromStart = each.dayIndexesFromStart,
                     .dayIndexesFromFinish = each.dayIndexesFromFinish});
    }
  }
  return all;
}

std::int64_t TaskCloudSummary::summaryHash() const {
  return static_cast<std::int64_t>(hashValue(*this));
}

}  // namespace velloro
