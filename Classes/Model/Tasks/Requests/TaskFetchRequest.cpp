#include "Tasks/Requests/TaskFetchRequest.h"

#include "Tasks/Requests/RequestOf.h"
#include "Tasks/Rows/TaskCategoryEntity.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "Tasks/Rows/UserProfileEntity.h"
#include "VelloroCore/Types/HealthType.h"

namespace velloro {
namespace {

using Columns = TaskAttributes;
using Filter = TaskFetchRequest::TaskTypeFilter;
using ShareStatus = TaskShareEntity::ShareStatus;
using Tasks = Predicate<TaskEntity>;

Tasks statusIn(EnumSet<TaskStatus> statuses) {
  const Tasks isOneOf = Columns::status.in(statuses);
  if (!statuses.contains(TaskStatus::normal)) return isOneOf;
  return isOneOf || Columns::status == std::nullopt;
}

Tasks isSharedAs(EnumSet<ShareStatus> statuses) {
  const auto status = Columns::taskShare / TaskShareEntity::status;
  return Columns::taskShare != nullptr && status.in(statuses);
}

Tasks predicate(TaskShareStatus status) {
  switch (status) {
    case TaskShareStatus::isSharedWithOthers:
      return isSharedAs({ShareStatus::localTask});
    case TaskShareStatus::isSharedWithMe:
      return isSharedAs({ShareStatus::externalTask, ShareStatus::externalTaskNoLongerShared});
    case TaskShareStatus::notShared:
      break;
  }
  return Columns::taskShare == nullptr;
}

std::vector<std::string_view> dietaryNames() {
  std::vector<std::string_view> names;
  for (const HealthType type : allCases<HealthType>()) {
    if (isDietary(type)) names.push_back(rawValue(type));
  }
  return names;
}

std::vector<std::string_view> timedNames() {
  std::vector<std::string_view> names;
  for (const HealthType type : timedTypes()) names.push_back(rawValue(type));
  return names;
}

Tasks predicate(Filter filter) {
  switch (filter) {
    case Filter::health:
      return Columns::typeName.beginsWith("hk_");
    case Filter::eat:
      return Columns::typeName.in(dietaryNames());
    case Filter::timed:
      return Columns::typeSpeed == rawValue(TypeSpeed::timed) || Columns::typeName.in(timedNames());
    case Filter::negative:
      break;
  }
  return Columns::isNegative == true;
}

Tasks predicate(TaskPageNumber page) {
  const auto range = TaskDisplayOrder::valueRange(page);
  return Columns::displayOrder >= range.lower && Columns::displayOrder < range.upper;
}

std::vector<Tasks> predicates(const auto& wanted) {
  std::vector<Tasks> parts;
  for (const auto one : wanted) parts.push_back(predicate(one));
  return parts;
}

std::vector<SortDescriptor<TaskEntity>> order(TaskFetchRequest::SortDirection direction) {
  if (direction == TaskFetchRequest::SortDirection::statusDateDesc) {
    return {Columns::statusDate.descending(), Columns::created.descending(),
            Columns::title.ascending()};
  }
  return {Columns::displayOrder.ascending(), Columns::created.ascending(),
          Columns::title.ascending()};
}

}  // namespace

NSFetchRequest TaskFetchRequest::fetchRequest() const {
  std::vector<Tasks> parts;
  if (!includeStatuses.isEmpty()) parts.push_back(statusIn(includeStatuses));
  if (!includeShareStatuses.isEmpty()) parts.push_back(anyOf(predicates(includeShareStatuses)));
  if (!includeTaskTypeFilter.isEmpty()) parts.push_back(anyOf(predicates(includeTaskTypeFilter)));
  for (const TaskTypeFilter filter : excludeTaskTypeFilter) parts.push_back(!predicate(filter));
  if (maxStatusDate) parts.push_back(Columns::statusDate <= *maxStatusDate);
  if (!pageNumbers.empty()) parts.push_back(anyOf(predicates(pageNumbers)));
  if (userProfile) parts.push_back(Columns::userProfile == userProfile);
  if (!uniqueIds.empty()) parts.push_back(Columns::uniqueId.in(uniqueIds));
  if (!includeCategories.empty()) {
    parts.push_back(any(Columns::taskCategories).in(includeCategories));
  }
  return requestOf(parts, order(direction), fetchLimit);
}

}  // namespace velloro
