#include "Tasks/Status/StoredTaskStatus.h"

#include "Foundation/Text/Locale.h"
#include "Settings/SavedActivityRings.h"
#include "Tasks/Log/StoredEntries.h"
#include "Tasks/Log/StoredLog.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "VelloroCore/Titles/TaskTitleSource.h"

namespace velloro {

using Columns = TaskAttributes;
using Direction = TaskLogFetchRequest::Direction;

namespace {

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

Date creationDate(const TaskSnapshot& task) {
  if (const auto stored = task.entity->value(Columns::created)) return *stored;
  const auto entries = entriesOrNone(
      *task.entity,
      {.direction = Direction::oldestToNewest, .maxDate = task.standing.today(), .fetchLimit = 1});
  const auto made =
      entries.empty() ? std::nullopt : entries.front()->value(TaskLogEntryEntity::createdTimestamp);
  return made.value_or(task.standing.now);
}

YYYYMMDD createdDay(const TaskSnapshot& task) {
  const auto madeIn = task.entity->value(Columns::createdTimeZone);
  return YYYYMMDD::fromDate(task.standing.startOfDay, creationDate(task),
                            madeIn.value_or(task.standing.timeZone));
}

TaskDisplayTitle displayTitle(const TaskSnapshot& task, const TaskProgress& progress) {
  const auto& type = task.standing.automaticTaskType;
  return TaskDisplayTitle::build({.title = task.entity->title(),
                                  .automaticTaskType = type,
                                  .isNegative = task.standing.isNegative,
                                  .isTimed = type && type->isTimed(),
                                  .progress = progress,
                                  .now = task.standing.now},
                                 Locale::current());
}

SkipMode willSkip(const TaskSnapshot& task, const TaskFrequencyPeriod& period) {
  const TaskLogRules rules = task.standing.rules();
  return willSkip(
      period, {.rules = rules,
               .status = task.status,
               .shareStatus = task.shareStatus,
               .createdDay = [&] { return createdDay(task); },
               .numUniqueCompletions =
                   [&](YYYYMMDD from, YYYYMMDD to) { return numUniqueCompletions(task, from, to); },
               .lastCompletedDate = [&](YYYYMMDD day) { return lastCompletedDate(task, day); }});
}

StreakedCompletionStatus streakedCompletionStatus(const TaskSnapshot& task,
                                                  const TaskFrequencyPeriod& period) {
  keepRings(task.standing, period);
  return task.standing.streakedCompletionStatus(
      period, [&](const TaskFrequencyPeriod& open) { return willSkip(task, open); });
}

NumUniqueCompletions numUniqueCompletions(const TaskSnapshot& task, YYYYMMDD from, YYYYMMDD to) {
  for (const auto& [first, last, completions] : task.countedDays) {
    if (first == from && last == to) return completions;
  }
  const StoredLog log(*task.entity, {.direction = Direction::newestToOldest,
                                     .minDate = from,
                                     .maxDate = to,
                                     .includeStatuses = TaskLogEntryTypes::allFullTypes});
  const auto counted = NumUniqueCompletions::fromLog(log.rows(), task.standing.rules(), from, to);
  task.countedDays.push_back({from, to, counted});
  return counted;
}

std::optional<YYYYMMDD> lastCompletedDate(const TaskSnapshot& task, YYYYMMDD onOrBefore) {
  if (task.shareStatus == TaskShareStatus::isSharedWithMe) return std::nullopt;
  const StoredLog log(*task.entity,
                      {.direction = Direction::newestToOldest,
                       .maxDate = onOrBefore,
                       .fetchLimit = 1,
                       .includeStatuses = {TaskLogEntryType::completedManuallyFull,
                                           TaskLogEntryType::completedAutomaticallyFull}});
  return lastCompletedDate(log.rows(), onOrBefore);
}

TaskProgress progress(const TaskSnapshot& task, const TaskFrequencyPeriod& period, double amount) {
  TaskStanding standing = task.standing;
  standing.runningTimer.reset();
  standing.temporal = {.progress = amount, .progressDate = period.startDate};
  return standing.progress(period);
}

}  // namespace velloro
