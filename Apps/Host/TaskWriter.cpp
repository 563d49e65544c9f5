#include "Host/TaskWriter.h"

#include "Foundation/Process/Environment.h"
#include "Foundation/Text/String.h"
#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "OxCheckableTasks/Icons/IconVisualRepresentation.h"
#include "Tasks/Rows/TaskWriting.h"
#include "VelloroCore/Frequency/DayModeRules.h"

#include <algorithm>

namespace velloro {
namespace {

/// Behind the last task of the page.
TaskDisplayOrder freePlace(const HostStore& store, TaskPageNumber page) {
  const auto [lower, upper] = TaskDisplayOrder::valueRange(page);
  TaskDisplayOrder place{page, 0};
  const auto tasks = store.tasks({});
  for (const auto& task : tasks) {
    const TaskDisplayOrder taken = task->taskDisplayOrder();
    if (taken.pageNumber == page && task->taskStatus() != TaskStatus::trashed) {
      place.position = std::max(place.position, taken.position + 1);
    }
  }
  if (place.displayOrderValue() < upper) return place;
  throw HostError(stringWithFormat("page %lld is full", static_cast<long long>(page.value)));
}

std::string rhythmOf(DayMode mode) {
  const auto period = caseNames<TaskFrequencyPeriodType::year>().rawValue(
      periodTypeForCompletionCountCalculation(mode));
  if (mode == DayMode::dayInterval) return "in an interval of days";
  if (isAggregate(mode)) return "with one total over a " + std::string(period);
  if (countsDays(mode)) return "on a number of days of a " + std::string(period);
  return mode == DayMode::specificDaysOfMonth ? "on days of the month" : "on days of the week";
}

void setPossibleFrequency(TaskEntity& task, const TaskFrequency& frequency) {
  setFrequency(task, frequency);
  const TaskFrequency stored = task.frequency();
  const auto check = [&](const char* what, std::int64_t wanted, std::int64_t possible) {
    if (wanted == possible) return;
    throw ImpossibleTask(stringWithFormat("such a task can't have %lld %s; the nearest is %lld",
                                          static_cast<long long>(wanted), what,
                                          static_cast<long long>(possible)));
  };
  if (stored.dayMode != frequency.dayMode) {
    throw ImpossibleTask("such a task can't recur " + rhythmOf(frequency.dayMode));
  }
  if (stored.dayMode == DayMode::specificDaysOfWeek && stored.days != frequency.days) {
    throw ImpossibleTask("such a task can't recur on chosen days of the week");
  }
  check("steps to a completion", frequency.numPartialCompletions, stored.numPartialCompletions);
  if (countsDays(stored.dayMode))
    check("days per period", frequency.numCompletions, stored.numCompletions);
  if (stored.dayMode == DayMode::dayInterval) {
    check("days between completions", frequency.dayInterval, stored.dayInterval);
  }
  if (stored.isEmpty()) throw ImpossibleTask("without any weekday the task would never be due");
}

}  // namespace

std::shared_ptr<TaskEntity> addTask(const HostStore& store, const TaskFields& fields,
                                    Date created) {
  const auto place = freePlace(store, fields.page.value_or(TaskPageNumber::first));
  auto task = TaskEntity::create(store.context());
  setTaskDisplayOrder(*task, place);
  task->setValue(TaskAttributes::uniqueId, UniqueID::create());
  setTaskStatus(*task, TaskStatus::normal, created);
  task->setValue(TaskAttributes::created, created);
  const TimeZone zone = fields.timeZone.value_or(Environment::current().timeZone());
  task->setValue(TaskAttributes::createdTimeZone, zone);
  TaskFields complete = fields;
  if (!complete.frequency) complete.frequency = TaskFrequency::defaultFrequency;
  changeTask(store, *task, complete);
  return task;
}

void changeTask(const HostStore& store, TaskEntity& task, const TaskFields& fields) {
  // Not every type can recur as the task does.
  const TaskFrequency frequency = fields.frequency.value_or(task.frequency());
  if (fields.title) task.setValue(TaskAttributes::title, *fields.title);
  if (fields.automaticTaskType) setAutomaticTaskType(task, fields.automaticTaskType);
  if (fields.isNegative) task.setValue(TaskAttributes::isNegative, *fields.isNegative);
  if (fields.frequency || fields.automaticTaskType) setPossibleFrequency(task, frequency);
  if (fields.startOfDay) task.replaceValue(TaskAttributes::startOfDayValue, fields.startOfDay);
  if (fields.firstDayOfWeek) {
    task.replaceValue(TaskAttributes::firstDayOfWeekValue,
                      calendarDayOfWeek(*fields.firstDayOfWeek));
  }
  if (fields.timeZone) {
    task.setValue(TaskAttributes::currentTimeZoneOverride, fields.timeZone);
  }
  if (fields.icon) {
    task.setDisplayRepresentation(
        {.visualRepresentation = IconVisualRepresentation::icon(*fields.icon),
         .displayProperties = {}});
  }
  if (fields.color) task.replaceValue(TaskAttributes::colorInfo, fields.color);
  if (fields.page && fields.page != task.taskDisplayOrder().pageNumber) {
    setTaskDisplayOrder(task, freePlace(store, *fields.page));
  }
}

}  // namespace velloro
