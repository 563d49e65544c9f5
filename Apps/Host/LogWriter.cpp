#include "Host/LogWriter.h"

#include "Tasks/TaskLogFetchRequest.h"
#include "Tasks/TaskTemporalDataEntity.h"
#include "VelloroCore/TaskProgress.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

namespace velloro {
namespace {

using Type = TaskLogEntryType;
using Entry = TaskLogEntryEntity;

YYYYMMDD today(const TaskEntity& task) {
  return YYYYMMDD::today(task.startOfDay(), task.taskCurrentTimeZone());
}

TaskEntity::Entries entriesOf(const TaskEntity& task, const TaskLogFetchRequest& request) {
  return TaskEntity::taskLog(*task.managedObjectContext(), request, task);
}

TaskFrequencyPeriod periodOf(const TaskEntity& task, YYYYMMDD date) {
  return task.frequency().period(date, task.firstDayOfWeek()).period;
}

/// From the oldest.
TaskEntity::Entries entriesIn(const TaskEntity& task, const TaskFrequencyPeriod& period) {
  return entriesOf(task, {.direction = TaskLogFetchRequest::Direction::oldestToNewest,
                          .minDate = period.startDate,
                          .maxDate = period.finishDate});
}

/// What the entry brings its period on by.
double countedAmount(const TaskEntity& task, const Entry& entry) {
  const auto steps =
      task.isNegative() ? TaskLogEntryTypes::allMissedTypes : TaskLogEntryTypes::allCompletedTypes;
  const Type type = entry.logEntryType().value_or(Type::unknown);
  return steps.contains(type) || isTimer(type) ? entry.value(Entry::progress) : 0;
}

double totalOf(const TaskEntity& task, const TaskEntity::Entries& entries) {
  double total = 0;
  for (const auto& entry : entries) total += countedAmount(task, *entry);
  return total;
}

double totalSoFar(const TaskEntity& task, const TaskFrequencyPeriod& period) {
  return totalOf(task, entriesIn(task, period));
}

bool isBefore(const Entry& entry, const Entry& other) {
  const auto place = [](const Entry& one) {
    return std::pair(one.value(Entry::entryDate), one.value(Entry::createdTimestamp));
  };
  return place(entry) < place(other);
}

/// From the place on at which an entry has come in, or has gone.
void correctTotals(const TaskEntity& task, const TaskFrequencyPeriod& period, const Entry& moved) {
  double total = 0;
  const auto entries = entriesIn(task, period);
  for (const auto& entry : entries) {
    total += countedAmount(task, *entry);
    if (!isBefore(*entry, moved)) entry->writeValue(Entry::progressTotal, total);
  }
}

Type fullForm(Type type) {
  switch (type) {
    case Type::completedManuallyPartial:
      return Type::completedManuallyFull;
    case Type::completedAutomaticallyPartial:
      return Type::completedAutomaticallyFull;
    case Type::missedManuallyPartial:
      return Type::missedManuallyFull;
    case Type::missedAutomaticallyPartial:
      return Type::missedAutomaticallyFull;
    default:
      return type;
  }
}

struct Step {
  Type type;
  double amount;
  double total;
};

/// What an entry brings to a period with that progress, of which so much is done.
Step stepOf(const NewLogEntry& entry, bool isNegative, const TaskProgress& progress, double done) {
  constexpr double closeness = 0.00001;
  const Type type = entry.type.value_or(isNegative ? Type::missedManuallyPartial
                                                   : Type::completedManuallyPartial);
  const double target = progress.targetValue();
  if (isPartial(type)) {
    const double amount = entry.amount.value_or(progress.valuePerCompletion());
    const double total = done + amount;
    return {total > target - closeness ? fullForm(type) : type, amount, total};
  }
  const bool counts = isNegative ? isMissedFull(type) : isCompletedFull(type);
  const double amount = entry.amount.value_or(counts ? std::max(target - done, 0.0) : 0);
  return {type, amount, done + amount};
}

/// A moment later for each entry that the day has of that very instant, since the newest of a day's
/// entries tells its total and is the one to be taken back.
Date instantOfItsOwn(const TaskEntity::Entries& entries, YYYYMMDD date, Date at) {
  for (const auto& entry : entries) {
    const bool isOfDay = entry->value(Entry::entryDate) == date.intValue();
    if (isOfDay && entry->value(Entry::createdTimestamp) == at) at = at + 0.001;
  }
  return at;
}

std::shared_ptr<Entry> insertEntry(TaskEntity& task, const TaskFrequencyPeriod& period,
                                   YYYYMMDD date, UniqueID id, Date at, const Step& step) {
  const auto entry = Entry::create(*task.managedObjectContext());
  entry->setValue(Entry::uniqueId, id.stringValue());
  entry->setValue(Entry::entryDate, static_cast<std::int32_t>(date.intValue()));
  entry->setValue(Entry::entryType, static_cast<std::int16_t>(rawValue(step.type)));
  entry->setValue(Entry::entryPeriodFrom, static_cast<std::int32_t>(period.startDate.intValue()));
  entry->setValue(Entry::entryPeriodTo, static_cast<std::int32_t>(period.finishDate.intValue()));
  entry->setValue(Entry::entryPeriodType, std::string(rawValue(period.periodType)));
  entry->setValue(Entry::progress, step.amount);
  entry->setValue(Entry::progressTotal, step.total);
  entry->setValue(Entry::createdTimestamp, at);
  entry->setValue(Entry::createdTimeZone, std::string(task.taskCurrentTimeZone().identifier()));
  entry->setValue(Entry::task, std::static_pointer_cast<TaskEntity>(task.shared_from_this()));
  return entry;
}

/// The same for the same period of the same task, in whatever process.
UniqueID closingEntryID(const TaskEntity& task, const TaskFrequencyPeriod& period) {
  const auto id = task.taskUniqueId();
  if (!id) return UniqueID::create();
  UUID::Bytes bytes = id->uuid.bytes();
  auto day = static_cast<std::uint32_t>(period.startDate.intValue());
  for (std::size_t i = bytes.size(); day != 0; day >>= 8) {
    bytes[--i] ^= static_cast<std::uint8_t>(day);
  }
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x80);  // version 8: a form of our own
  return {UUID(bytes)};
}

Type closingType(const TaskEntity& task, const TaskFrequencyPeriod& period) {
  if (isSkip(task.willSkip(period))) return Type::skippedAutomaticallyFull;
  return task.isNegative() ? Type::completedAutomaticallyFull : Type::missedAutomaticallyFull;
}

/// The first days of the periods that a full entry has settled.
std::set<YYYYMMDD> settledPeriods(const TaskEntity& task, YYYYMMDD from, YYYYMMDD to) {
  std::set<YYYYMMDD> settled;
  const auto entries = entriesOf(task, {.direction = TaskLogFetchRequest::Direction::none,
                                        .minDate = from,
                                        .maxDate = to,
                                        .includeStatuses = TaskLogEntryTypes::allFullTypes});
  for (const auto& entry : entries) {
    const auto period = entry->period();
    if (period) settled.insert(periodOf(task, period->date).startDate);
  }
  return settled;
}

/// The one that was current when the host last closed periods, or in which the task was made.
TaskFrequencyPeriod firstOpenPeriod(const TaskEntity& task, const TaskFrequencyPeriod& current) {
  auto since = task.value(TaskAttributes::lastProcessedDate);
  if (!since) since = task.value(TaskAttributes::created);
  if (!since) return current;
  return periodOf(task, YYYYMMDD::fromDate(task.startOfDay(), *since, task.taskCurrentTimeZone()));
}

/// Health data are counted into the row by whoever reads them; what is entered by hand stands in
/// for them.
void keepEnteredAmount(TaskEntity& task) {
  const auto type = task.automaticTaskType();
  const auto row = task.value(TaskAttributes::taskTemporalData);
  if (!type || !type->type.healthType() || row == nullptr) return;
  const TaskFrequencyPeriod period = task.currentPeriod().period;
  const double total = totalSoFar(task, period);
  const auto day = static_cast<std::int32_t>(period.startDate.intValue());
  if (row->value(TaskTemporalDataEntity::progress) == total &&
      row->value(TaskTemporalDataEntity::progressDate) == day) {
    return;
  }
  row->setValue(TaskTemporalDataEntity::progress, total);
  row->setValue(TaskTemporalDataEntity::progressDate, day);
}

}  // namespace

std::shared_ptr<Entry> addLogEntry(TaskEntity& task, const NewLogEntry& entry) {
  const TaskFrequencyPeriod period = periodOf(task, entry.date);
  const auto others = entriesIn(task, period);
  const Step step = stepOf(entry, task.isNegative(), task.progress(period), totalOf(task, others));
  auto written = insertEntry(task, period, entry.date, UniqueID::create(),
                             instantOfItsOwn(others, entry.date, entry.at), step);
  if (!others.empty() && isBefore(*written, *others.back())) correctTotals(task, period, *written);
  return written;
}

std::shared_ptr<Entry> undoLogEntry(TaskEntity& task, YYYYMMDD date) {
  const TaskFrequencyPeriod period = periodOf(task, date);
  const auto id = task.currentUndoableEntry(period);
  if (!id) return nullptr;
  const auto entries = entriesOf(task, {.uniqueIds = {*id}});
  if (entries.empty()) return nullptr;
  for (const auto& entry : entries) task.managedObjectContext()->deleteObject(*entry);
  correctTotals(task, period, *entries.front());
  if (period < task.currentPeriod().period) {  // to be closed again
    task.setValue(TaskAttributes::lastProcessedDate,
                  period.startDate.startOfDay(task.startOfDay(), task.taskCurrentTimeZone()));
  }
  return entries.front();
}

std::int64_t closePastPeriods(TaskEntity& task) {
  if (task.taskShareStatus() == TaskShareStatus::isSharedWithMe) return 0;
  const TaskFrequencyPeriod current = task.currentPeriod().period;
  const TaskFrequencyPeriod open = firstOpenPeriod(task, current);
  const bool isProcessed = task.value(TaskAttributes::lastProcessedDate).has_value();
  if (isProcessed && !(open < current)) return 0;
  task.setValue(TaskAttributes::lastProcessedDate, Date::now());
  // Whoever takes a task out of the trash has missed nothing while it was there.
  if (!(open < current) || task.taskStatus() == TaskStatus::trashed) return 0;

  const auto settled = settledPeriods(task, open.startDate, current.startDate);
  std::int64_t closed = 0;
  for (auto period = open; period < current; period = period.next()) {
    if (settled.contains(period.startDate)) continue;
    const Step step{closingType(task, period), 0, totalSoFar(task, period)};
    insertEntry(task, period, period.finishDate, closingEntryID(task, period), Date::now(), step);
    ++closed;
  }
  return closed;
}

void updateDerivedData(TaskEntity& task) {
  task.updateTemporalData(today(task), task.taskCurrentTimeZone());
  keepEnteredAmount(task);
}

void bringUpToDate(TaskEntity& task) {
  const bool isNew = task.value(TaskAttributes::taskTemporalData) == nullptr;
  if (closePastPeriods(task) > 0 || isNew) updateDerivedData(task);
}

}  // namespace velloro
