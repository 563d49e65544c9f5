#pragma once

#include "CoreData/Fetch/NSFetchRequest.h"
#include "Foundation/Time/Date.h"
#include "OxKit/EnumSet.h"
#include "OxKit/UniqueID.h"
#include "VelloroCore/Appearance/TaskDisplayOrder.h"
#include "VelloroCore/Status/TaskStatus.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <set>

namespace velloro {

class TaskCategoryEntity;
class UserProfileEntity;

/// Which tasks are wanted, and in which order. A set that is empty and an optional that is absent
/// ask for nothing in particular; all that is asked for must hold.
///
///     const TaskFetchRequest request{.direction = TaskFetchRequest::SortDirection::statusDateDesc,
///                                    .includeStatuses = activeStatuses};
///     const auto tasks = context->fetch<TaskEntity>(request.fetchRequest());
struct TaskFetchRequest {
  enum class SortDirection : std::uint8_t {
    displayOrder,    ///< By place; of equal places the elder task first, then by title.
    statusDateDesc,  ///< The latest change of status first, then the younger task, then by title.
  };
  enum class TaskTypeFilter : std::uint8_t {
    health,    ///< Of health data.
    eat,       ///< What one eats and drinks.
    timed,     ///< Timers, and the health types that can be done with one.
    negative,  ///< Habits to avoid.
  };

  SortDirection direction = SortDirection::displayOrder;
  std::set<TaskPageNumber> pageNumbers = {};
  std::shared_ptr<UserProfileEntity> userProfile = {};
  std::set<UniqueID> uniqueIds = {};
  std::optional<std::int64_t> fetchLimit = {};
  std::optional<Date> maxStatusDate = {};  ///< Itself included.
  /// A task without a status counts as normal.
  EnumSet<TaskStatus> includeStatuses = {};
  /// A shared task without a status of its share is in none of them.
  EnumSet<TaskShareStatus> includeShareStatuses = {};
  std::set<std::shared_ptr<TaskCategoryEntity>> includeCategories = {};  ///< One of them is enough.
  EnumSet<TaskTypeFilter> includeTaskTypeFilter = {};                    ///< One of them is enough.
  EnumSet<TaskTypeFilter> excludeTaskTypeFilter = {};

  [[nodiscard]] NSFetchRequest fetchRequest() const;
};

}  // namespace velloro
