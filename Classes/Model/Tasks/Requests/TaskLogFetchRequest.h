#pragma once

#include "CoreData/Fetch/NSFetchRequest.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/EnumSet.h"
#include "OxKit/UniqueID.h"
#include "VelloroCore/Log/TaskLogEntryType.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace velloro {

class TaskEntity;

/// Which entries of logs are wanted, and in which order. What is empty or absent asks for nothing
/// in particular; all that is asked for must hold.
///
///     const TaskLogFetchRequest newest{
///         .direction = TaskLogFetchRequest::Direction::newestToOldest,
///         .fetchLimit = 1};
///     const auto entries = task->taskLog(newest);
struct TaskLogFetchRequest {
  enum class Direction : std::uint8_t {
    none,
    newestToOldest,  ///< By day, and within a day by the instant at which they were made.
    oldestToNewest,
  };

  Direction direction = Direction::none;
  std::optional<YYYYMMDD> minDate = {}, maxDate = {};  ///< Themselves included.
  std::optional<std::int64_t> fetchLimit = {};
  std::vector<UniqueID> uniqueIds = {};
  EnumSet<TaskLogEntryType> includeStatuses = {}, excludeStatuses = {};
  bool temporaryEntriesOnly = false;
  std::optional<Date> madeSince = {};  ///< Itself included.

  /// \param task Whose log; null for the logs of all tasks.
  [[nodiscard]] NSFetchRequest fetchRequest(const TaskEntity* task = nullptr) const;
};

}  // namespace velloro
