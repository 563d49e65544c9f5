#include "Tasks/Rows/TaskWriting.h"

#include "Tasks/Columns/StoredAutomaticTaskType.h"
#include "Tasks/Columns/StoredFrequency.h"

#include <algorithm>
#include <limits>

namespace velloro {

using Columns = TaskAttributes;

namespace {

/// The column holds 16 bits; a count beyond them is none that anyone chose.
std::int16_t columnOf(std::int64_t number) {
  using Limits = std::numeric_limits<std::int16_t>;
  return static_cast<std::int16_t>(std::clamp<std::int64_t>(number, Limits::min(), Limits::max()));
}

}  // namespace

bool setTaskStatus(TaskEntity& task, TaskStatus status, Date now) {
  if (!task.writeValue(Columns::status, status)) return false;
  task.setValue(Columns::statusDate, now);
  return true;
}

bool setTaskDisplayOrder(TaskEntity& task, const TaskDisplayOrder& order) {
  return task.writeValue(Columns::displayOrder, columnOf(order.displayOrderValue()));
}

bool setFrequency(TaskEntity& task, const TaskFrequency& frequency) {
  bool wrote = task.writeValue(Columns::daysMode, frequency.dayMode);
  wrote |= task.writeValue(Columns::daysOfWeek, daysOfWeek(frequency.days));
  wrote |= task.writeValue(Columns::daysTimesPerDay, columnOf(frequency.numPartialCompletions));
  if (const auto count = StoredFrequency::daysPerWeekOf(frequency)) {
    wrote |= task.writeValue(Columns::daysPerWeek, columnOf(*count));
  }
  return wrote;
}

bool setAutomaticTaskType(TaskEntity& task, const std::optional<AutomaticTaskType>& type) {
  const auto stored = StoredAutomaticTaskType::from(type);
  bool wrote = task.writeValue(Columns::typeName, stored.typeName);
  wrote |= task.writeValue(Columns::typeTarget, stored.typeTarget);
  wrote |= task.writeValue(Columns::typeUnit, stored.typeUnit);
  wrote |= task.writeValue(Columns::typeSpeed, stored.typeSpeed);
  return wrote;
}

}  // namespace velloro
