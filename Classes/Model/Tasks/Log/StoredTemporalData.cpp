#include "Tasks/Log/StoredTemporalData.h"

#include "Tasks/Log/StoredLog.h"
#include "Tasks/Log/TaskOutlook.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"
#include "Tasks/Status/StoredTaskStatus.h"
#include "VelloroCore/Log/TaskRecentHistory.h"
#include "VelloroCore/Status/TaskLogSummary.h"

#include <algorithm>
#include <limits>

namespace velloro {

using Columns = TaskAttributes;
using Direction = TaskLogFetchRequest::Direction;
using Temporal = TaskTemporalDataEntity;

namespace {

std::int16_t storedCount(std::int64_t count) {
  constexpr std::int64_t most = std::numeric_limits<std::int16_t>::max();
  return static_cast<std::int16_t>(std::min(count, most));
}

std::optional<YYYYMMDD> dayOf(const std::optional<TaskLogSummary::Moment>& moment) {
  return moment ? std::optional(moment->first) : std::nullopt;
}

/// Whether the log alone tells how far the task has come: not for what is read from health data.
bool progressIsOfLog(const std::optional<AutomaticTaskType>& type) {
  return !type || !type->usesHealthKit();
}

/// Of health data the log does not tell, and what was read of them stays. Until something was, the
/// entries of the period, made here or on another device, stand in.
void letEntriesStandIn(TaskTemporalData& kept, TaskLogRows rows, const TaskLogRules& rules,
                       const TaskFrequencyPeriod& period) {
  const bool isOfPeriod = kept.progressDate && period.contains(*kept.progressDate);
  const auto entered = enteredAmount(rows, rules, period, isOfPeriod ? kept.progress : 0);
  if (!entered || (!isOfPeriod && *entered == 0)) return;
  kept.progress = *entered;
  if (!isOfPeriod) kept.progressDate = period.startDate;
}

std::shared_ptr<Temporal> makeRow(NSManagedObjectContext& context,
                                  const std::shared_ptr<TaskEntity>& task) {
  auto row = Temporal::create(context);
  row->setValue(Temporal::task, task);
  row->setValue(Temporal::lastChangedDifficulty, task->value(Columns::lastChangedDifficulty));
  row->setValue(Temporal::lastChangedDifficultyStatus,
                task->value(Columns::lastChangedDifficultyStatus));
  row->setStored(Temporal::lastChangedDifficultyTimeZone,
                 task->stored(Columns::lastChangedDifficultyTimeZone));
  return row;
}

void write(Temporal& row, const TaskTemporalData& data) {
  row.writeValue(Temporal::activeStreak, data.streak.current);
  row.writeValue(Temporal::bestStreak, data.streak.best);
  row.writeValue(Temporal::lastCompleted, data.lastCompleted);
  row.writeValue(Temporal::lastMissed, data.lastMissed);
  row.writeValue(Temporal::lastSkipped, data.lastSkipped);
  row.writeValue(Temporal::progress, data.progress);
  row.writeValue(Temporal::progressDate, data.progressDate);
}

void write(Temporal& row, const TaskRecentHistory& history) {
  const auto& [shortTerm, longTerm] = std::tie(history.shortTerm, history.longTerm);
  row.writeValue(Temporal::recentShortTermPct, shortTerm.successPct);
  row.writeValue(Temporal::recentShortTermNumSamples, storedCount(shortTerm.numSamples));
  row.writeValue(Temporal::recentLongTermPct, longTerm.successPct);
  row.writeValue(Temporal::recentLongTermNumSamples, storedCount(longTerm.numSamples));
}

/// A clock that was set back does not move it backwards.
void dateChanges(Temporal& row, Date now) {
  const auto stored = row.value(Temporal::lastUpdated);
  const auto changed = row.changedValues();
  if (!stored) {
    row.setValue(Temporal::lastUpdated, now);
  } else if (!changed.empty() && !changed.contains("lastUpdated")) {
    row.writeValue(Temporal::lastUpdated, std::max(now, *stored));
  }
}

/// One fetch serves all that is asked: no rate looks further than the last period.
TaskLogFetchRequest wholeLogUpTo(const TaskLogRules& rules, YYYYMMDD day) {
  const TaskLogSummary::Question question{.rules = rules, .to = day};
  return {.direction = Direction::newestToOldest, .maxDate = question.dates().maxDate};
}

void repair(TaskEntity& task, const TaskSnapshot& snapshot) {
  if (!task.value(Columns::created)) task.setValue(Columns::created, creationDate(snapshot));
  if (!task.value(Columns::uniqueId)) task.setValue(Columns::uniqueId, UniqueID::create());
  if (!task.value(Columns::statusDate)) {
    task.setValue(Columns::statusDate, snapshot.standing.now);
  }
}

TaskLogRules rulesIn(const TaskSnapshot& task, TimeZone timeZone) {
  TaskLogRules rules = task.standing.rules();
  rules.timeZone = timeZone;
  return rules;
}

/// What the log says of the task on a day.
TaskTemporalData temporalData(const TaskSnapshot& snapshot, TaskLogRows rows,
                              const TaskLogRules& rules, YYYYMMDD day) {
  const auto summary = TaskLogSummary::fromLog(
      rows, {.rules = rules, .to = day, .created = snapshot.entity->value(Columns::created)});
  TaskStanding task = snapshot.standing;
  task.timeZone = rules.timeZone;
  task.runningTimer.reset();
  task.temporal.streak = summary.streak;
  task.temporal.lastCompleted = dayOf(summary.lastCompleted);
  task.temporal.lastMissed = dayOf(summary.lastMissed);
  task.temporal.lastSkipped =
      std::max(dayOf(summary.lastSkipped), dayOf(summary.lastAllowableMiss));
  if (progressIsOfLog(task.automaticTaskType)) {
    const TaskFrequencyPeriod& period = summary.lastPeriod;
    task.temporal.progressDate = period.startDate;
    task.temporal.progress = task.automaticTaskType
                                 ? amountInPeriod(rows, rules, period).value_or(0)
                                 : static_cast<double>(summary.numLastPeriodEntries);
    task.temporal.progress = task.progress(period).currentValue(rules.now);
  } else {
    letEntriesStandIn(task.temporal, rows, rules, summary.lastPeriod);
  }
  return task.temporal;
}

}  // namespace

TaskTemporalData temporalData(const TaskEntity& task) {
  if (task.outlook() != nullptr && task.outlook()->temporal) return *task.outlook()->temporal;
  const auto row = task.value(Columns::taskTemporalData);
  if (row == nullptr) return {};
  return {
      .streak = StreakRecord(row->value(Temporal::activeStreak), row->value(Temporal::bestStreak)),
      .lastCompleted = row->value(Temporal::lastCompleted),
      .lastMissed = row->value(Temporal::lastMissed),
      .lastSkipped = row->value(Temporal::lastSkipped),
      .progress = row->value(Temporal::progress),
      .progressDate = row->value(Temporal::progressDate)};
}

TaskTemporalData temporalDataFromLog(const TaskSnapshot& task, YYYYMMDD day, TimeZone timeZone) {
  const TaskLogRules rules = rulesIn(task, timeZone);
  const StoredLog log(*task.entity, wholeLogUpTo(rules, day));
  return temporalData(task, log.rows(), rules, day);
}

void updateTemporalData(TaskEntity& task, YYYYMMDD day, TimeZone timeZone, Date now) {
  NSManagedObjectContext* context = task.managedObjectContext();
  if (context == nullptr) return;
  const TaskSnapshot snapshot = TaskSnapshot::of(task, now);
  const TaskLogRules rules = rulesIn(snapshot, timeZone);
  repair(task, snapshot);
  auto row = task.value(Columns::taskTemporalData);
  if (row == nullptr) {
    row = makeRow(*context, std::static_pointer_cast<TaskEntity>(task.shared_from_this()));
  }
  const StoredLog log(task, wholeLogUpTo(rules, day));
  const TaskTemporalData temporal = temporalData(snapshot, log.rows(), rules, day);
  write(*row, temporal);
  write(*row,
        TaskRecentHistory::fromLog(log.rows(), {.rules = rules,
                                                .from = day.yyyymm().previousMonth().firstDay(),
                                                .to = day,
                                                .createdDay = createdDay(snapshot),
                                                // Today's, so that a second pass finds nothing new.
                                                .lastCompleted = temporal.lastCompleted}));
  dateChanges(*row, now);
}

TaskLogSummary logSummary(const TaskSnapshot& task, std::optional<YYYYMMDD> from, YYYYMMDD to) {
  const TaskLogRules rules = task.standing.rules();
  const TaskLogSummary::Question question{
      .rules = rules, .from = from, .to = to, .created = task.entity->value(Columns::created)};
  const auto [minDate, maxDate] = question.dates();
  const StoredLog log(
      *task.entity,
      {.direction = Direction::newestToOldest, .minDate = minDate, .maxDate = maxDate});
  return TaskLogSummary::fromLog(log.rows(), question);
}

TaskRecentHistory recentHistory(const TaskSnapshot& task, std::optional<YYYYMMDD> from,
                                YYYYMMDD to) {
  const TaskLogRules rules = task.standing.rules();
  const TaskRecentHistory::Question question{.rules = rules,
                                             .from = from,
                                             .to = to,
                                             .createdDay = createdDay(task),
                                             .lastCompleted = task.standing.temporal.lastCompleted};
  const auto [minDate, maxDate] = question.dates();
  const StoredLog log(*task.entity, {.direction = Direction::newestToOldest,
                                     .minDate = minDate,
                                     .maxDate = maxDate,
                                     .includeStatuses = TaskLogEntryTypes::allFullTypes});
  return TaskRecentHistory::fromLog(log.rows(), question);
}

}  // namespace velloro
