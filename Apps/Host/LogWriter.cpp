#include "Host/LogWriter.h"

#include "CoreData/Context/NSManagedObjectContext.h"
#include "Host/HealthReader.h"
#include "Host/LogEntryRow.h"
#include "OxKit/Numbers.h"
#include "Tasks/Log/StoredEntries.h"
#include "Tasks/Log/StoredTemporalData.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"
#include "Tasks/Status/StoredTaskStatus.h"
#include "Tasks/Status/TaskSnapshot.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>
#include <vector>

namespace velloro {
namespace {

using Entry = TaskLogEntryEntity;
using Temporal = TaskTemporalDataEntity;

/// Those that read as entries of the period, from the oldest.
TaskEntity::Entries entriesIn(const TaskEntity& task, const TaskLogRules& rules,
                              const TaskFrequencyPeriod& period) {
  auto entries = entriesOrNone(task, {.direction = TaskLogFetchRequest::Direction::oldestToNewest,
                                      .minDate = period.startDate,
                                      .maxDate = period.finishDate});
  std::erase_if(entries, [&](const auto& entry) {
    const auto own = entry->period();
    return !own || rules.period(own->date) != period;
  });
  return entries;
}

bool isMadeByHand(const std::shared_ptr<Entry>& entry) {
  const auto type = entry->value(Entry::entryType);
  return type && TaskLogEntryTypes::allManualTypes.contains(*type);
}

std::vector<double> totalsOf(const TaskEntity& task, const TaskEntity::Entries& entries) {
  std::vector<LogStep> steps;
  for (const auto& entry : entries) {
    steps.push_back({entry->value(Entry::entryType).value_or(TaskLogEntryType::unknown),
                     entry->value(Entry::progress)});
  }
  return runningTotals(steps, task.isNegative());
}

double totalOf(const TaskEntity& task, const TaskEntity::Entries& entries) {
  return entries.empty() ? 0 : totalsOf(task, entries).back();
}

bool isBefore(const Entry& entry, const Entry& other) {
  const auto place = [](const Entry& one) {
    return std::pair(one.value(Entry::entryDate), one.value(Entry::createdTimestamp));
  };
  return place(entry) < place(other);
}

/// Rewrites the totals from the entry on that was added or removed.
void correctTotals(const TaskEntity& task, const TaskEntity::Entries& entries, const Entry& moved) {
  const auto totals = totalsOf(task, entries);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (!isBefore(*entries[i], moved)) entries[i]->writeValue(Entry::progressTotal, totals[i]);
  }
}

std::vector<Date> instantsOf(const TaskEntity::Entries& entries, YYYYMMDD date) {
  std::vector<Date> instants;
  for (const auto& entry : entries) {
    const auto at = entry->value(Entry::createdTimestamp);
    if (at && entry->value(Entry::entryDate) == date) instants.push_back(*at);
  }
  return instants;
}

bool isReadFromHealth(const TaskEntity& task) {
  const auto type = task.automaticTaskType();
  return type && type->type.healthType();
}

/// What a reader of health data has counted in the period, or who stands in for it; absent where
/// nothing is kept of the period.
std::optional<double> keptAmount(const TaskEntity& task, const TaskFrequencyPeriod& period) {
  const TaskTemporalData kept = temporalData(task);
  const bool isOfPeriod = kept.progressDate && period.contains(*kept.progressDate);
  return isOfPeriod ? std::optional(kept.progress) : std::nullopt;
}

void keepAmount(TaskEntity& task, const TaskFrequencyPeriod& period, double amount) {
  const auto row = task.value(TaskAttributes::taskTemporalData);
  if (row == nullptr) return;
  row->writeValue(Temporal::progress, amount);
  row->writeValue(Temporal::progressDate, period.startDate);
}

/// Health data are counted into the row by whoever reads them. What is entered by hand stands in
/// for them until then: while the row says what the log did before it changed.
void keepEnteredAmount(TaskEntity& task, const TaskFrequencyPeriod& period, double before,
                       double after, const TaskLogRules& rules) {
  if (!isReadFromHealth(task) || period != rules.period(rules.today())) return;
  constexpr double closeness = 0.00001;
  const auto kept = keptAmount(task, period);
  if (!kept || std::abs(*kept - before) < closeness) keepAmount(task, period, after);
}

bool settles(const Entry& entry, bool isNegative) {
  const auto type = entry.value(Entry::entryType).value_or(TaskLogEntryType::unknown);
  return isNegative ? isMissedFull(type) : isCompletedFull(type);
}

/// How much of a period is done. Where a reader of health data has found more than was entered, its
/// amount is what the title shows and what the next entry completes; once an entry has completed
/// it, nothing is left.
double done(const TaskEntity& task, const TaskFrequencyPeriod& period,
            const TaskEntity::Entries& entries, double entered, Date now) {
  if (!isReadFromHealth(task)) return entered;
  const double known = std::max(entered, keptAmount(task, period).value_or(0));
  const bool isSettled = std::ranges::any_of(
      entries, [&](const auto& entry) { return settles(*entry, task.isNegative()); });
  return isSettled
             ? std::max(known, progress(TaskSnapshot::of(task, now), period, known).targetValue())
             : known;
}

/// What was timed, in the unit of the task: instants are known less exactly than amounts.
std::optional<double> amountOf(const NewLogEntry& entry, const TaskProgress& progress) {
  const auto* timer = progress.as<TaskProgressTimer>();
  if (!entry.timed || timer == nullptr) return entry.amount;
  constexpr TimeInterval closeness = 0.01;
  const TimeInterval left = timer->remainingDurationCurrentCompletion();
  const bool isLeft = std::abs(left - *entry.timed) < closeness;
  return TaskProgressTimer::convertFromTimeInterval(isLeft ? left : roundToPlaces(*entry.timed, 3),
                                                    timer->unit);
}

}  // namespace

std::shared_ptr<Entry> addLogEntry(TaskEntity& task, const NewLogEntry& entry, Date now) {
  const TaskLogRules rules = logRules(task, now);
  const TaskFrequencyPeriod period = rules.period(entry.date);
  const auto others = entriesIn(task, rules, period);
  const double entered = totalOf(task, others);
  const double reached = done(task, period, others, entered, now);
  const TaskProgress before = progress(TaskSnapshot::of(task, now), period, reached);
  const LogStep step = nextLogStep({.type = entry.type,
                                    .amount = amountOf(entry, before),
                                    .isNegative = task.isNegative(),
                                    .progress = before,
                                    .done = reached,
                                    .now = now});
  const double total = entered + step.counted(task.isNegative());
  auto written = LogEntryRow{.id = entry.id.value_or(UniqueID::create()),
                             .period = period,
                             .date = entry.date,
                             .at = instantOfItsOwn(entry.at, instantsOf(others, entry.date)),
                             .step = step,
                             .total = total}
                     .insert(task);
  if (!others.empty() && isBefore(*written, *others.back())) {
    correctTotals(task, entriesIn(task, rules, period), *written);
  }
  keepEnteredAmount(task, period, entered, total, rules);
  return written;
}

std::shared_ptr<Entry> undoLogEntry(TaskEntity& task, YYYYMMDD date, Date now) {
  const TaskLogRules rules = logRules(task, now);
  const TaskFrequencyPeriod period = rules.period(date);
  auto left = entriesIn(task, rules, period);
  const auto newest = std::ranges::find_if(left.rbegin(), left.rend(), isMadeByHand);
  if (newest == left.rend()) return nullptr;
  const auto undone = *newest;
  const double before = totalOf(task, left);
  left.erase(std::next(newest).base());
  task.managedObjectContext()->deleteObject(*undone);
  correctTotals(task, left, *undone);
  keepEnteredAmount(task, period, before, totalOf(task, left), rules);
  const Date start = period.startDate.startOfDay(rules.startOfDay, rules.timeZone);
  const auto processed = task.value(TaskAttributes::lastProcessedDate);
  if (processed && start < *processed && period < rules.period(rules.today())) {
    task.setValue(TaskAttributes::lastProcessedDate, start);  // to be closed again
  }
  return undone;
}

void updateDerivedData(TaskEntity& task, Date now) {
  const HealthReading reading = readHealthIntoLog(task, now, HealthRange::recent, /*isSaved=*/true);
  const TaskLogRules rules = logRules(task, now);
  task.updateTemporalData(rules.today(), rules.timeZone, now);
  keepHealthProgress(task, reading);
}

}  // namespace velloro
