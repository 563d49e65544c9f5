#include "VelloroTaskShare/TaskCloudSummary.h"

#include "Foundation/Values/Hasher.h"

namespace velloro {

std::vector<TaskCloudSummary::Entry> task_cloud_summary::History::unsortedPeriods() const {
  std::vector<Entry> periods = multi;
  for (const auto& [day, entry] : single) periods.push_back(entry);
  return periods;
}

std::int64_t TaskCloudSummary::summaryHash() const {
  return static_cast<std::int64_t>(hashValue(*this));
}

}  // namespace velloro
