#include "Tasks/Requests/TaskFetchRequest.h"

#include "Tasks/Requests/PredicateParts.h"
#include "Tasks/Rows/TaskCategoryEntity.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "Tasks/Rows/UserProfileEntity.h"
#include "VelloroCore/Types/HealthType.h"

namespace velloro {
namespace {

using Filter = TaskFetchRequest::TaskTypeFilter;
using Predicates = std::vector<NSPredicate>;
using ShareStatus = TaskShareEntity::ShareStatus;

NSPredicate anyOf(Predicates parts) {
  return NSCompoundPredicate::orPredicateWithSubpredicates(std::move(parts));
}

NSPredicate statusIn(EnumSet<TaskStatus> statuses) {
  Predicates parts{NSPredicate::format("%K IN %@", {"status", rawValuesOf(statuses)})};
  if (statuses.contains(TaskStatus::normal)) {
    parts.push_back(NSPredicate::format("%K = nil", {"status"}));
  }
  return anyOf(std::move(parts));
}

NSPredicate isSharedAs(EnumSet<ShareStatus> statuses) {
  return NSCompoundPredicate::andPredicateWithSubpredicates(
      {NSPredicate::format("%K != nil", {"taskShare"}),
       NSPredicate::format("%K IN %@", {"taskShare.status", rawValuesOf(statuses)})});
}

NSPredicate predicate(TaskShareStatus status) {
  switch (status) {
    case TaskShareStatus::isSharedWithOthers:
      return isSharedAs({ShareStatus::localTask});
    case TaskShareStatus::isSharedWithMe:
      return isSharedAs({ShareStatus::externalTask, ShareStatus::externalTaskNoLongerShared});
    case TaskShareStatus::notShared:
      break;
  }
  return NSPredicate::format("%K = nil", {"taskShare"});
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

NSPredicate predicate(Filter filter) {
  switch (filter) {
    case Filter::health:
      return NSPredicate::format("%K BEGINSWITH %@", {"typeName", "hk_"});
    case Filter::eat:
      return NSPredicate::format("%K IN %@", {"typeName", dietaryNames()});
    case Filter::timed:
      return anyOf({NSPredicate::format("%K = %@", {"typeSpeed", rawValue(TypeSpeed::timed)}),
                    NSPredicate::format("%K IN %@", {"typeName", timedNames()})});
    case Filter::negative:
      break;
  }
  return NSPredicate::format("%K = %@", {"isNegative", true});
}

NSPredicate isOnPage(TaskPageNumber page) {
  const auto range = TaskDisplayOrder::valueRange(page);
  return NSPredicate::format("%K >= %@ AND %K < %@",
                             {"displayOrder", range.lower, "displayOrder", range.upper});
}

template <typename Set>
Predicates predicates(const Set& wanted) {
  Predicates parts;
  for (const auto one : wanted) parts.push_back(predicate(one));
  return parts;
}

std::vector<NSSortDescriptor> sortDescriptors(TaskFetchRequest::SortDirection direction) {
  if (direction == TaskFetchRequest::SortDirection::statusDateDesc) {
    return {{"statusDate", false}, {"created", false}, {"title"}};
  }
  return {{"displayOrder"}, {"created"}, {"title"}};
}

}  // namespace

NSFetchRequest TaskFetchRequest::fetchRequest() const {
  PredicateParts parts;
  if (!includeStatuses.isEmpty()) parts.add(statusIn(includeStatuses));
  if (!includeShareStatuses.isEmpty()) parts.addAnyOf(predicates(includeShareStatuses));
  if (!includeTaskTypeFilter.isEmpty()) parts.addAnyOf(predicates(includeTaskTypeFilter));
  for (const TaskTypeFilter filter : excludeTaskTypeFilter) {
    parts.add(NSCompoundPredicate::notPredicateWithSubpredicate(predicate(filter)));
  }
  if (maxStatusDate) parts.add("%K <= %@", {"statusDate", *maxStatusDate});
  if (!pageNumbers.empty()) {
    Predicates pages;
    for (const TaskPageNumber page : pageNumbers) pages.push_back(isOnPage(page));
    parts.addAnyOf(std::move(pages));
  }
  if (userProfile) parts.add("%K = %@", {"userProfile", userProfile});
  if (!uniqueIds.empty()) parts.add("%K IN %@", {"uniqueId", textsOf(uniqueIds)});
  if (!includeCategories.empty()) {
    const std::vector categories(includeCategories.begin(), includeCategories.end());
    parts.add("ANY %K IN %@", {"taskCategories", categories});
  }
  NSFetchRequest request{std::string(TaskEntity::entityName())};
  request.setPredicate(std::move(parts).all());
  request.setSortDescriptors(sortDescriptors(direction));
  setFetchLimit(request, fetchLimit);
  return request;
}

}  // namespace velloro
