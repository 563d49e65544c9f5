#include "Foundation/Text/Locale.h"
#include "Foundation/Text/String.h"
#include "Settings/SavedActivityRings.h"
#include "Tasks/Log/StoredLog.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"
#include "Tasks/Rows/TaskTimerEntity.h"
#include "VelloroCore/Titles/TaskTitleIcon.h"
#include "VelloroCore/Titles/TaskTitleSource.h"

#include <algorithm>

namespace velloro {

using Columns = TaskAttributes;
using Direction = TaskLogFetchRequest::Direction;
using Temporal = TaskTemporalDataEntity;
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

/// The rings of today, as far as they are closed, wherever the standing of today is read.
void keepRings(const TaskStanding& task, const TaskFrequencyPeriod& period) {
  if (!task.automaticTaskType || task.automaticTaskType->type != HealthType::activity) return;
  const TaskFrequencyPeriod current = task.currentPeriod().period;
  if (period < current) return;
  const TaskProgress progress = task.progress(current);
  const auto* rings = progress.as<TaskProgressActivityRings>();
  if (rings != nullptr) SavedActivityRings::shared()->save(*rings, task.today());
}

}  // namespace

UniqueID TaskEntity::uniqueId() const {
  return taskUniqueId().value_or(UniqueID());
}

std::string TaskEntity::title() const {
  // A text that is not UTF-8 would keep every record with it from being written.
  return repairedUTF8(value(Columns::title).value_or(""));
}

bool TaskEntity::isTimed() const {
  const auto type = automaticTaskType();
  return type && type->isTimed();
}

bool TaskEntity::isNegative() const {
  return value(Columns::isNegative);
}

std::optional<TaskDisplayTitle::TitleIcon> TaskEntity::titleIcon() const {
  return velloro::titleIcon(automaticTaskType(), isNegative());
}

TaskDisplayTitle TaskEntity::displayTitle(Date date, Date now) const {
  return displayTitle(progress(period(date), now), now);
}

TaskDisplayTitle TaskEntity::displayTitle(const TaskProgress& progress, Date now) const {
  const auto type = automaticTaskType();
  return TaskDisplayTitle::build({.title = title(),
                                  .automaticTaskType = type,
                                  .isNegative = isNegative(),
                                  .isTimed = type && type->isTimed(),
                                  .progress = progress,
                                  .now = now},
                                 Locale::current());
}

TaskTemporalData TaskEntity::temporalData() const {
  if (outlook_ && outlook_->temporal) return *outlook_->temporal;
  const auto row = value(Columns::taskTemporalData);
  if (row == nullptr) return {};
  return {
      .streak = StreakRecord(row->value(Temporal::activeStreak), row->value(Temporal::bestStreak)),
      .lastCompleted = row->value(Temporal::lastCompleted),
      .lastMissed = row->value(Temporal::lastMissed),
      .lastSkipped = row->value(Temporal::lastSkipped),
      .progress = row->value(Temporal::progress),
      .progressDate = row->value(Temporal::progressDate)};
}

TaskStanding TaskEntity::standing(Date now) const {
  TaskStanding task{.frequency = frequency(),
                    .startOfDay = startOfDay(),
                    .firstDayOfWeek = firstDayOfWeek(),
                    .timeZone = taskCurrentTimeZone(),
                    .isNegative = isNegative(),
                    .automaticTaskType = automaticTaskType(),
                    .typeTarget = value(Columns::typeTarget),
                    .temporal = temporalData(),
                    .now = now};
  if (task.automaticTaskType && task.automaticTaskType->isTimed()) {
    for (const auto& timer : value(Columns::taskTimer)) {
      if (auto running = velloro::runningTimer(*timer, task.firstDayOfWeek, now)) {
        task.runningTimer = std::move(running);
      }
    }
  }
  return task;
}

TaskLogRules TaskEntity::logRules(Date now) const {
  return {.frequency = frequency(),
          .startOfDay = startOfDay(),
          .firstDayOfWeek = firstDayOfWeek(),
          .timeZone = taskCurrentTimeZone(),
          .isNegative = isNegative(),
          .now = now};
}

YYYYMMDD TaskEntity::createdDay(Date now) const {
  const auto madeIn = value(Columns::createdTimeZone);
  return YYYYMMDD::fromDate(startOfDay(), creationDate(now),
                            madeIn.value_or(taskCurrentTimeZone()));
}

DatedPeriod TaskEntity::currentPeriod(Date now) const {
  return frequency().currentPeriod(startOfDay(), firstDayOfWeek(), taskCurrentTimeZone(), now);
}

TaskFrequencyPeriod TaskEntity::period(Date date) const {
  return frequency().period(startOfDay(), date, firstDayOfWeek(), taskCurrentTimeZone()).period;
}

SkipMode TaskEntity::willSkip(const TaskFrequencyPeriod& period, Date now) const {
  return willSkip(period, logRules(now));
}

SkipMode TaskEntity::willSkip(const TaskFrequencyPeriod& period, const TaskLogRules& rules) const {
  return velloro::willSkip(
      period,
      {.rules = rules,
       .status = taskStatus(),
       .shareStatus = taskShareStatus(),
       .createdDay = [&] { return createdDay(rules.now); },
       .numUniqueCompletions =
           [&](YYYYMMDD from, YYYYMMDD to) { return numUniqueCompletions(from, to, rules.now); },
       .lastCompletedDate = [&](YYYYMMDD day) { return lastCompletedDate(day); }});
}

TaskProgress TaskEntity::progress(const TaskFrequencyPeriod& period, Date now) const {
  return standing(now).progress(period);
}

TaskProgress TaskEntity::progress(const TaskFrequencyPeriod& period, double amount,
                                  Date now) const {
  TaskStanding task = standing(now);
  task.runningTimer.reset();
  task.temporal = {.progress = amount, .progressDate = period.startDate};
  return task.progress(period);
}

CompletionStatus TaskEntity::completionStatus(const TaskFrequencyPeriod& period, Date now) const {
  return streakedCompletionStatus(period, now).completionStatus;
}

StreakedCompletionStatus TaskEntity::streakedCompletionStatus(const TaskFrequencyPeriod& period,
                                                              Date now) const {
  const TaskStanding task = standing(now);
  const TaskLogRules rules = task.rules();
  keepRings(task, period);
  return task.streakedCompletionStatus(
      period, [&](const TaskFrequencyPeriod& open) { return willSkip(open, rules); });
}

StreakedCompletionStatus TaskEntity::streakedCompletionStatus(Date date, Date now) const {
  return streakedCompletionStatus(period(date), now);
}

std::optional<UniqueID> TaskEntity::currentUndoableEntry(
    const std::optional<TaskFrequencyPeriod>& period) const {
  const auto entries =
      entriesOrNone({.direction = Direction::newestToOldest,
                     .minDate = period ? std::optional(period->startDate) : std::nullopt,
                     .maxDate = period ? std::optional(period->finishDate) : std::nullopt,
                     .fetchLimit = 1,
                     .includeStatuses = TaskLogEntryTypes::allManualTypes});
  return entries.empty() ? std::nullopt : entries.front()->value(TaskLogEntryEntity::uniqueId);
}

NumUniqueCompletions TaskEntity::numUniqueCompletions(YYYYMMDD from, YYYYMMDD to, Date now) const {
  const StoredLog log(*this, {.direction = Direction::newestToOldest,
                              .minDate = from,
                              .maxDate = to,
                              .includeStatuses = TaskLogEntryTypes::allFullTypes});
  return NumUniqueCompletions::fromLog(log.rows(), logRules(now), from, to);
}

std::optional<YYYYMMDD> TaskEntity::lastCompletedDate(YYYYMMDD onOrBefore) const {
  if (taskShareStatus() == TaskShareStatus::isSharedWithMe) return std::nullopt;
  const StoredLog log(*this, {.direction = Direction::newestToOldest,
                              .maxDate = onOrBefore,
                              .fetchLimit = 1,
                              .includeStatuses = {TaskLogEntryType::completedManuallyFull,
                                                  TaskLogEntryType::completedAutomaticallyFull}});
  return velloro::lastCompletedDate(log.rows(), onOrBefore);
}

}  // namespace velloro
