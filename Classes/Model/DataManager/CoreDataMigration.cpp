#include "DataManager/CoreDataMigration.h"

namespace velloro {
namespace {

std::string description(const TaskCount& count) {
  return "TaskCount(active: " + std::to_string(count.active) +
         ", archived: " + std::to_string(count.archived) + ")";
}

}  // namespace

bool CoreDataMigrationReport::isSuccess() const {
  if (errorMessage && !errorMessage->empty()) return false;
  if (!postNumTasks) return false;
  return preNumTasks.total() < 1 || postNumTasks->total() != 0;
}

std::string CoreDataMigrationReport::debugDescription() const {
  return "migratorVersion=" + std::to_string(migratorVersion) +
         " preNumTasks=" + description(preNumTasks) +
         " postNumTasks=" + (postNumTasks ? description(*postNumTasks) : "nil") +
         " errorMessage=" + errorMessage.value_or("nil") +
         " isSuccess=" + (isSuccess() ? "true" : "false");
}

}  // namespace velloro
