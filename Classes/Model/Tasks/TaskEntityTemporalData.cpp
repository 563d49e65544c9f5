#include "Tasks/StoredLog.h"
#include "Tasks/TaskEntity.h"
#include "Tasks/TaskLogEntryEntity.h"
#include "Tasks/TaskLogFetchRequest.h"
#include "Tasks/TaskTemporalDataEntity.h"

#include <algorithm>
#include <limits>

namespace velloro {

using Columns = TaskAttributes;
using Direction = TaskLogFetchRequest::Direction;
using Temporal = TaskTemporalDataEntity;

namespace {

std::int32_t storedNumber(const std::optional<YYYYMMDD>& day) {
  return static_cast<std::int32_t>(day ? day->intValue() : YYYYMMDD::emptyValue);
}

std::int16_t storedCount(std::int64_t count) {
  constexpr std::int64_t most = std::numeric_limits<std::int16_t>::max();
  return static_cast<std::int16_t>(std::min(count, most));
}

std::optional<YYYYMMDD> dayOf(const std::optional<TaskLogSummary::Moment>& moment) {
  return moment ? std::optional(moment->first) : std::nullopt;
}

/// What the log says of a task on a day, as the row keeps it.
TaskTemporalData temporalDataOf(const TaskLogSummary& summary) {
  return {.streak = summary.streak,
          .lastCompleted = dayOf(summary.lastCompleted),
          .lastMissed = dayOf(summary.lastMissed),
          .lastSkipped = std::max(dayOf(summary.lastSkipped), dayOf(summary.lastAllowableMiss))};
}

/// Whether the log alone tells how far the task has come: not for what is read from health data.
bool progressIsOfLog(const std::optional<AutomaticTaskType>& type) {
  return !type || !type->usesHealthKit();
}

std::shared_ptr<Temporal> makeRow(NSManagedObjectContext& context,
                                  const std::shared_ptr<TaskEntity>& task) {
  auto row = Temporal::create(context);
  row->setValue(Temporal::task, task);
  row->setValue(Temporal::lastChangedDifficulty, task->value(Columns::lastChangedDifficulty));
  row->setValue(Temporal::lastChangedDifficultyStatus,
                task->value(Columns::lastChangedDifficultyStatus));
  row->setValue(Temporal::lastChangedDifficultyTimeZone,
                task->value(Columns::lastChangedDifficultyTimeZone));
  return row;
}

void write(Temporal& row, const TaskTemporalData& data) {
  row.writeValue(Temporal::activeStreak, data.streak.current);
  row.writeValue(Temporal::bestStreak, data.streak.best);
  row.writeValue(Temporal::lastCompleted, storedNumber(data.lastCompleted));
  row.writeValue(Temporal::lastMissed, storedNumber(data.lastMissed));
  row.writeValue(Temporal::lastSkipped, storedNumber(data.lastSkipped));
}

void write(Temporal& row, const TaskRecentHistory& history) {
  const auto& [shortTerm, longTerm] = std::tie(history.shortTerm, history.longTerm);
  row.writeValue(Temporal::recentShortTermPct, shortTerm.successPct);
  row.writeValue(Temporal::recentShortTermNumSamples, storedCount(shortTerm.numSamples));
  row.writeValue(Temporal::recentLongTermPct, longTerm.successPct);
  row.writeValue(Temporal::recentLongTermNumSamples, storedCount(longTerm.numSamples));
}

/// A clock that was set back does not move it backwards.
void dateChanges(Temporal& row) {
  const Date now = Date::now();
  const auto stored = row.value(Temporal::lastUpdated);
  const auto changed = row.changedValues();
  if (!stored) {
    row.setValue(Temporal::lastUpdated, now);
  } else if (!changed.empty() && !changed.contains("lastUpdated")) {
    row.writeValue(Temporal::lastUpdated, std::max(now, *stored));
  }
}

}  // namespace

TaskLogSummary TaskEntity::logSummary(std::optional<YYYYMMDD> from, YYYYMMDD to) const {
  const TaskLogRules rules = logRules();
  const TaskLogSummary::Question question{
      .rules = rules, .from = from, .to = to, .created = value(Columns::created)};
  const auto [minDate, maxDate] = question.dates();
  const StoredLog log(
      *this, {.direction = Direction::newestToOldest, .minDate = minDate, .maxDate = maxDate});
  return TaskLogSummary::fromLog(log.rows(), question);
}

TaskRecentHistory TaskEntity::recentHistory(std::optional<YYYYMMDD> from, YYYYMMDD to) const {
  const TaskLogRules rules = logRules();
  const TaskRecentHistory::Question question{.rules = rules,
                                             .from = from,
                                             .to = to,
                                             .createdDay = createdDay(),
                                             .lastCompleted = temporalData().lastCompleted};
  const auto [minDate, maxDate] = question.dates();
  const StoredLog log(*this, {.direction = Direction::newestToOldest,
                              .minDate = minDate,
                              .maxDate = maxDate,
                              .includeStatuses = TaskLogEntryTypes::allFullTypes});
  return TaskRecentHistory::fromLog(log.rows(), question);
}

void TaskEntity::repair() {
  if (!value(Columns::created)) setValue(Columns::created, creationDate());
  if (!taskUniqueId()) setValue(Columns::uniqueId, UniqueID::create().stringValue());
  if (!value(Columns::statusDate)) setValue(Columns::statusDate, Date::now());
}

void TaskEntity::updateTemporalData(YYYYMMDD day, TimeZone timeZone) {
  NSManagedObjectContext* context = managedObjectContext();
  if (context == nullptr) return;
  TaskLogRules rules = logRules();
  rules.timeZone = timeZone;
  repair();
  auto row = value(Columns::taskTemporalData);
  if (row == nullptr) {
    row = makeRow(*context, std::static_pointer_cast<TaskEntity>(shared_from_this()));
  }
  // One fetch serves all that is asked: no rate looks further than the last period.
  const TaskLogSummary::Question question{
      .rules = rules, .to = day, .created = value(Columns::created)};
  const StoredLog log(
      *this, {.direction = Direction::newestToOldest, .maxDate = question.dates().maxDate});
  const auto summary = TaskLogSummary::fromLog(log.rows(), question);
  TaskStanding task = standing();
  task.timeZone = timeZone;
  task.runningTimer.reset();
  task.temporal = temporalDataOf(summary);
  write(*row, task.temporal);
  write(*row,
        TaskRecentHistory::fromLog(log.rows(), {.rules = rules,
                                                .from = day.yyyymm().previousMonth().firstDay(),
                                                .to = day,
                                                .createdDay = createdDay(),
                                                // Today's, so that a second pass finds nothing new.
                                                .lastCompleted = task.temporal.lastCompleted}));
  if (progressIsOfLog(task.automaticTaskType)) {
    const TaskFrequencyPeriod& period = summary.lastPeriod;
    task.temporal.progressDate = period.startDate;
    task.temporal.progress = task.automaticTaskType
                                 ? amountInPeriod(log.rows(), rules, period).value_or(0)
                                 : static_cast<double>(summary.numLastPeriodEntries);
    row->writeValue(Temporal::progress, task.progress(period).currentValue());
    row->writeValue(Temporal::progressDate, storedNumber(period.startDate));
  }
  dateChanges(*row);
}

}  // namespace velloro
