#include "Host/HealthReader.h"

#include "CoreData/Context/NSManagedObjectContext.h"
#include "Health/AutomaticTaskTypeQualifierOperation.h"
#include "Health/HealthManager.h"
#include "Host/LogEntryRow.h"
#include "Host/OwnSamples.h"
#include "OxLog/Log.h"
#include "Tasks/Log/StoredEntries.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "VelloroCore/Status/PeriodClosing.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace velloro {
namespace {

using Entry = TaskLogEntryEntity;
using Entries = TaskEntity::Entries;

bool isByHand(const Entry& entry) {
  return TaskLogEntryTypes::allManualTypes.contains(
      entry.value(Entry::entryType).value_or(TaskLogEntryType::unknown));
}

bool isFullEntry(const Entry& entry) {
  return isFull(entry.value(Entry::entryType).value_or(TaskLogEntryType::unknown));
}

Entries ofPeriod(const Entries& entries, const TaskLogRules& rules,
                 const TaskFrequencyPeriod& period) {
  Entries found;
  std::ranges::copy_if(entries, std::back_inserter(found), [&](const auto& entry) {
    const auto own = entry->period();
    return own && rules.period(own->date) == period;
  });
  return found;
}

/// A reading as it is kept in one number.
double keptValue(const TaskProgress& progress, const AutomaticTaskType& type, Date now) {
  if (const auto* range = progress.as<TaskProgressDateRange>()) return range->scale;
  if (const auto* rings = progress.as<TaskProgressActivityRings>()) return rings->encoded();
  if (const auto* discrete = progress.as<TaskProgressDiscrete>()) {
    // Bedtime is kept as its target, once it has been met.
    if (type.type == HealthType::bedtime) return discrete->numCompletions > 0 ? type.quantity : 0;
  }
  return progress.currentValue(now);
}

/// Entries that can't become samples count beside them.
void addEntered(TaskProgress& progress, double entered) {
  if (auto* amount = std::get_if<TaskProgressContinuous>(&progress.record)) {
    amount->currentValue = reachedAmount(amount->currentValue + entered, amount->targetValue);
  } else if (auto* count = std::get_if<TaskProgressDiscrete>(&progress.record)) {
    count->numCompletions += static_cast<std::int64_t>(entered);
  }
}

class Reader {
 public:
  Reader(TaskEntity& task, const AutomaticTaskType& type, const UniqueID& id, Date now,
         const std::shared_ptr<HKHealthStore>& store)
      : task_(task), type_(type), id_(id), now_(now), store_(store), rules_(logRules(task, now)) {}

  HealthReading read(HealthRange range, bool isSaved) {
    const TaskFrequencyPeriod current = rules_.period(rules_.today());
    const YYYYMMDD first =
        std::min(range == HealthRange::changed ? firstChanged() : recently(), firstWritten());
    entries_ = entriesOrNone(task_, {.direction = TaskLogFetchRequest::Direction::oldestToNewest,
                                     .minDate = rules_.period(first).startDate,
                                     .maxDate = current.finishDate});
    const auto samples = OwnSamples::of(task_, *store_);
    ownSamplesCount_ = samples.has_value();
    if (samples && isSaved) {
      const auto written = samples->bringUpToDate(
          entries_, {.minDate = rules_.period(first).startDate, .maxDate = current.finishDate});
      if (!written) Log::healthKit.error(written.error());
    }
    if (!store_->isHealthDataAvailable()) return {};
    for (auto period = rules_.period(first); period < current; period = following(period)) {
      readPeriod(period, false);
    }
    readPeriod(current, true);
    return std::move(reading_);
  }

 private:
  /// The night that ended today may belong to the day before, and counts half an hour later.
  [[nodiscard]] YYYYMMDD recently() const {
    constexpr std::int64_t days = 2;
    return rules_.today().add(-days, rules_.timeZone);
  }

  [[nodiscard]] YYYYMMDD firstChanged() const {
    YYYYMMDD first = recently();
    const auto goBackTo = [&](std::optional<Date> date) {
      constexpr double night = 1.5 * 86400;
      if (!date || *date > now_) return;
      first =
          std::min(first, YYYYMMDD::fromDate(rules_.startOfDay, *date - night, rules_.timeZone));
    };
    goBackTo(task_.value(TaskAttributes::lastProcessedDate));
    if (const auto changed = store_->oldestChange()) goBackTo(*changed);
    constexpr YYYYMMDD earliest{.y = 1970, .m = 1, .d = 1};
    return std::max(first, earliest);
  }

  /// An entry of a past day has a sample there, too.
  [[nodiscard]] YYYYMMDD firstWritten() const {
    YYYYMMDD first = rules_.today();
    const auto look = [&](const auto& objects) {
      for (const auto& object : objects) {
        const auto entry = std::dynamic_pointer_cast<Entry>(object);
        if (entry == nullptr || entry->value(Entry::task).get() != &task_) continue;
        first = std::min(first, entry->value(Entry::entryDate).value_or(first));
      }
    };
    const NSManagedObjectContext& context = *task_.managedObjectContext();
    look(context.insertedObjects());
    look(context.updatedObjects());
    look(context.deletedObjects());
    return first;
  }

  /// The fortnights of neighbouring days may overlap.
  [[nodiscard]] TaskFrequencyPeriod following(const TaskFrequencyPeriod& period) const {
    return rules_.period(period.finishDate.nextDay(rules_.timeZone));
  }

  void readPeriod(const TaskFrequencyPeriod& period, bool isCurrent) {
    const Entries own = ofPeriod(entries_, rules_, period);
    const bool isSettled = std::ranges::any_of(
        own, [](const auto& entry) { return isByHand(*entry) && isFullEntry(*entry); });
    if (isSettled) {
      removeEntry(own, healthEntryID(id_, period.startDate));
      if (!isCurrent) return;
    }
    auto info = readHealth(task_, period, now_);
    if (!info) return;
    double entered = 0;
    for (const auto& entry : own) entered += amountByHand(*entry, task_.isNegative());
    TaskProgress& progress = info->progress.base;
    if (!ownSamplesCount_ && info->readingType == QualifyInfo::ReadingType::fromHealthKitData) {
      addEntered(progress, entered);
    }
    const double value = keptValue(progress, type_, now_);
    if (isCurrent) {
      reading_.progress = value;
      reading_.periodStart = period.startDate;
    }
    if (isSettled) return;
    if (progress.progressPct(now_) >= 1) {
      complete(period, own, value, std::max(value - entered, 0.0));
    } else if (removeEntry(own, healthEntryID(id_, period.startDate)) && !isCurrent) {
      reading_.reopened = std::min(reading_.reopened.value_or(period.startDate), period.startDate);
    }
  }

  void complete(const TaskFrequencyPeriod& period, const Entries& own, double total,
                double amount) {
    removeEntry(own, closingEntryID(id_, period.startDate));
    const UniqueID id = healthEntryID(id_, period.startDate);
    const auto found = std::ranges::find_if(
        own, [&](const auto& entry) { return entry->value(Entry::uniqueId) == id; });
    YYYYMMDD date = std::min(period.finishDate, rules_.today());
    while (date > period.startDate && rules_.period(date) != period) {
      date = date.previousDay(rules_.timeZone);
    }
    const bool isThere = found != own.end();
    const LogEntryRow row{
        .id = id,
        .period = period,
        .date = isThere ? (*found)->value(Entry::entryDate).value_or(date) : date,
        .at = isThere ? (*found)->value(Entry::createdTimestamp).value_or(now_) : now_,
        .step = {.type = task_.isNegative() ? TaskLogEntryType::missedAutomaticallyFull
                                            : TaskLogEntryType::completedAutomaticallyFull,
                 .amount = amount},
        .total = total};
    if (!isThere) {
      (void)row.insert(task_);
      reading_.isLogChanged = true;
    } else {
      const bool differs = (*found)->value(Entry::progressTotal) != total ||
                           (*found)->value(Entry::progress) != amount ||
                           (*found)->value(Entry::entryType) != row.step.type;
      if (!differs) return;
      row.write(**found, task_);
      reading_.isLogChanged = true;
    }
  }

  bool removeEntry(const Entries& own, const UniqueID& id) {
    const auto found = std::ranges::find_if(
        own, [&](const auto& entry) { return entry->value(Entry::uniqueId) == id; });
    if (found == own.end()) return false;
    task_.managedObjectContext()->deleteObject(**found);
    reading_.isLogChanged = true;
    return true;
  }

  TaskEntity& task_;
  const AutomaticTaskType& type_;
  const UniqueID& id_;
  Date now_;
  const std::shared_ptr<HKHealthStore>& store_;
  TaskLogRules rules_;
  Entries entries_;
  bool ownSamplesCount_ = false;
  HealthReading reading_;
};

}  // namespace

UniqueID healthEntryID(const UniqueID& task, YYYYMMDD periodStart) {
  UUID::Bytes bytes = closingEntryID(task, periodStart).uuid.bytes();
  bytes[0] ^= 0x80;
  return {UUID(bytes)};
}

namespace {

std::vector<InternalRecord> recordsOf(const TaskEntity& task, const TaskLogRules& rules,
                                      const TaskFrequencyPeriod& period) {
  std::vector<InternalRecord> records;
  const auto entries =
      entriesOrNone(task, {.direction = TaskLogFetchRequest::Direction::oldestToNewest,
                           .minDate = period.startDate,
                           .maxDate = period.finishDate});
  for (const auto& entry : ofPeriod(entries, rules, period)) {
    const double amount = amountByHand(*entry, task.isNegative());
    const auto kind = entry->value(Entry::entryType).value_or(TaskLogEntryType::unknown);
    const bool isDone = task.isNegative() ? isMissedFull(kind) : isCompletedFull(kind);
    if (amount != 0 || isDone) records.push_back({.isFull = isDone, .quantity = amount});
  }
  return records;
}

}  // namespace

Result<QualifyInfo> readHealth(const TaskEntity& task, const TaskFrequencyPeriod& period,
                               Date now) {
  const auto type = task.automaticTaskType();
  if (!type) return failure<QualifyError>(QualifyError::Kind::noQualifyAlgorithm);
  const TaskLogRules rules = logRules(task, now);
  auto operation = std::make_shared<AutomaticTaskTypeQualifierOperation>();
  operation->type = *type;
  operation->period = period;
  operation->startOfDay = rules.startOfDay;
  operation->timeZone = rules.timeZone;
  operation->numPartialCompletions = task.frequency().numPartialCompletions;
  operation->taskID = task.taskUniqueId();
  operation->currentDate = now;
  operation->store = HealthManager::shared().store();
  if (!operation->store->isHealthDataAvailable()) {
    operation->sortedInternalRecords = recordsOf(task, rules, period);
  }
  operation->start();
  operation->waitUntilFinished();
  if (!operation->result) return failure<QualifyError>(QualifyError::Kind::unknownError);
  return *std::move(operation->result);
}

HealthReading readHealthIntoLog(TaskEntity& task, Date now, HealthRange range, bool isSaved) {
  const auto type = task.automaticTaskType();
  const auto id = task.taskUniqueId();
  if (!type || !id || !type->usesHealthKit() || task.taskStatus() != TaskStatus::normal ||
      task.taskShareStatus() == TaskShareStatus::isSharedWithMe) {
    return {};
  }
  const auto store = HealthManager::shared().store();
  HealthReading reading = Reader(task, *type, *id, now, store).read(range, isSaved);
  if (reading.reopened) {
    const TaskLogRules rules = logRules(task, now);
    const Date start = reading.reopened->startOfDay(rules.startOfDay, rules.timeZone);
    const auto processed = task.value(TaskAttributes::lastProcessedDate);
    if (processed && start < *processed) task.setValue(TaskAttributes::lastProcessedDate, start);
  }
  return reading;
}

void keepHealthProgress(TaskEntity& task, const HealthReading& reading) {
  const auto row = task.value(TaskAttributes::taskTemporalData);
  if (row == nullptr || !reading.progress) return;
  row->writeValue(TaskTemporalDataEntity::progress, *reading.progress);
  row->writeValue(TaskTemporalDataEntity::progressDate, reading.periodStart);
}

}  // namespace velloro
