#include "Tasks/Status/TaskSnapshot.h"

#include "Settings/Settings.h"
#include "Tasks/Columns/StoredFrequency.h"
#include "Tasks/Log/StoredTemporalData.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskTimerEntity.h"
#include "VelloroCore/Frequency/DayModeRules.h"

#include <algorithm>

namespace velloro {

using Columns = TaskAttributes;
using Timer = TaskTimerEntity;

namespace {

/// Absent for a row that lacks what a timer needs.
std::optional<RunningTimer> runningTimer(const TaskTimerEntity& timer, DayOfWeek firstDayOfWeek,
                                         Date now) {
  const auto period = TaskLogEntryPeriod::fromStored(
      timer.value(Timer::entryPeriodType), timer.value(Timer::entryDate),
      timer.value(Timer::entryPeriodFrom), timer.value(Timer::entryPeriodTo));
  const auto start = timer.value(Timer::start);
  if (!period || !start) return std::nullopt;
  const Date end = std::min(timer.value(Timer::finish).value_or(now), now);
  return RunningTimer{.period = period->frequencyPeriod(firstDayOfWeek),
                      .duration = std::max(end.timeIntervalSince(*start), 0.0)};
}

/// Absent for a task without one.
std::optional<RunningTimer> runningTimer(const TaskEntity& task, const TaskStanding& standing) {
  std::optional<RunningTimer> newest;
  if (!standing.automaticTaskType || !standing.automaticTaskType->isTimed()) return newest;
  for (const auto& timer : task.value(Columns::taskTimer)) {
    auto running = runningTimer(*timer, standing.firstDayOfWeek, standing.now);
    if (running) newest = std::move(running);
  }
  return newest;
}

}  // namespace

TaskFrequency decodedFrequency(const TaskEntity& task,
                               const std::optional<AutomaticTaskType>& type) {
  const StoredFrequency stored{
      .daysMode = task.value(Columns::daysMode).value_or(DayMode::specificDaysOfWeek),
      .daysOfWeek = task.value(Columns::daysOfWeek).value_or(DaysOfWeek()),
      .daysPerWeek = task.value(Columns::daysPerWeek),
      .daysTimesPerDay = task.value(Columns::daysTimesPerDay)};
  return stored.frequency(type);
}

DayOfWeek decodedFirstDayOfWeek(const TaskEntity& task, DayMode mode) {
  const auto own = task.value(Columns::firstDayOfWeekValue);
  const bool hasMeaning = own && (usesFirstDayOfWeek(mode) ||
                                  task.taskShareStatus() == TaskShareStatus::isSharedWithMe);
  return hasMeaning ? dayOfWeek(*own) : Settings::shared().firstDayOfWeek();
}

TaskLogRules logRules(const TaskEntity& task, Date now) {
  const TaskFrequency frequency = task.frequency();
  return {.frequency = frequency,
          .startOfDay = task.startOfDay(),
          .firstDayOfWeek = decodedFirstDayOfWeek(task, frequency.dayMode),
          .timeZone = task.taskCurrentTimeZone(),
          .isNegative = task.isNegative(),
          .now = now};
}

TaskSnapshot TaskSnapshot::of(const TaskEntity& task, Date now) {
  const auto type = task.automaticTaskType();
  const TaskFrequency frequency = decodedFrequency(task, type);
  TaskSnapshot snapshot{
      .entity = &task,
      .standing = {.frequency = frequency,
                   .startOfDay = task.startOfDay(),
                   .firstDayOfWeek = decodedFirstDayOfWeek(task, frequency.dayMode),
                   .timeZone = task.taskCurrentTimeZone(),
                   .isNegative = task.isNegative(),
                   .automaticTaskType = type,
                   .typeTarget = task.value(Columns::typeTarget),
                   .temporal = temporalData(task),
                   .now = now},
      .status = task.taskStatus(),
      .shareStatus = task.taskShareStatus()};
  snapshot.standing.runningTimer = runningTimer(task, snapshot.standing);
  return snapshot;
}

}  // namespace velloro
