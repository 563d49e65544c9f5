#pragma once

#include "CoreData/Context/NSManagedObject.h"
#include "VelloroCore/Status/TaskStanding.h"

#include <optional>
#include <set>
#include <vector>

namespace velloro {

/// How a task's log will be once somebody writes it, for those who read and must not write.
struct TaskOutlook {
  std::vector<TaskLogRow> added = {};             ///< Entries that it will have, newest first.
  std::set<NSManagedObjectID> withdrawn = {};     ///< Stored entries that it won't have.
  std::optional<TaskTemporalData> temporal = {};  ///< What will be kept of it, where known.

  [[nodiscard]] bool withdraws(NSManagedObjectID entry) const { return withdrawn.contains(entry); }
};

}  // namespace velloro
