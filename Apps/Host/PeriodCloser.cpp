#include "Host/PeriodCloser.h"

#include "Foundation/Process/Environment.h"
#include "Host/LogEntryRow.h"
#include "Host/LogWriter.h"
#include "OxLog/Log.h"
#include "Tasks/Log/StoredLog.h"
#include "Tasks/Requests/PredicateParts.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"

#include <algorithm>
#include <map>
#include <ranges>

namespace velloro {

using Entry = TaskLogEntryEntity;
using Direction = TaskLogFetchRequest::Direction;

/// What is to become of a task's log.
struct PeriodCloser::Changes {
  Entries ahead = {};  ///< To be taken back.
  std::vector<PeriodClosing> closings = {};
  /// What will be kept of the log, where that is known without walking it.
  std::optional<TaskTemporalData> temporal = {};
  bool isProcessed = false;  ///< Whether the day is to be remembered.

  [[nodiscard]] bool isLogChanged() const { return !ahead.empty() || !closings.empty(); }
};

namespace {

YYYYMMDD dayOf(const TaskEntity& task, Date instant) {
  return YYYYMMDD::fromDate(task.startOfDay(), instant, task.taskCurrentTimeZone());
}

YYYYMMDD today(const TaskEntity& task) {
  return dayOf(task, Date::now());
}

/// Whether what is kept of the log tells of an entry of a kind that closes periods, in the current
/// one or later.
bool mayBeAhead(const TaskEntity& task) {
  const TaskTemporalData kept = task.temporalData();
  const auto newest =
      std::max(task.isNegative() ? kept.lastCompleted : kept.lastMissed, kept.lastSkipped);
  return newest && *newest >= task.currentPeriod().period.startDate;
}

bool closesPeriodAhead(const Entry& entry, const UniqueID& task, YYYYMMDD today) {
  const auto start = entry.value(Entry::entryPeriodFrom);
  const auto finish = entry.value(Entry::entryPeriodTo);
  return start && finish && *finish >= today &&
         entry.value(Entry::uniqueId) == closingEntryID(task, *start);
}

/// The rows by their identifiers. An entry that once closed a period may still be there although it
/// no longer settles it.
std::map<UniqueID, std::shared_ptr<Entry>> entriesByID(const TaskEntity::Entries& entries) {
  std::map<UniqueID, std::shared_ptr<Entry>> byID;
  for (const auto& entry : entries) {
    if (const auto id = entry->value(Entry::uniqueId)) byID.emplace(*id, entry);
  }
  return byID;
}

void write(TaskEntity& task, const std::vector<PeriodClosing>& closings) {
  if (closings.empty()) return;
  const auto there =
      entriesByID(task.entriesOrNone({.minDate = closings.front().period.startDate,
                                      .includeStatuses = TaskLogEntryTypes::allAutomaticTypes}));
  const auto own = task.taskUniqueId();
  const Date now = Date::now();
  for (const PeriodClosing& closing : closings) {
    const LogEntryRow row{
        .id = own ? closingEntryID(*own, closing.period.startDate) : UniqueID::create(),
        .period = closing.period,
        .date = closing.date,
        .at = now,
        .step = {.type = closing.type, .amount = 0},
        .total = closing.total};
    const auto found = there.find(row.id);
    if (found != there.end()) {
      row.write(*found->second, task);
    } else {
      (void)row.insert(task);
    }
  }
}

}  // namespace

/// Not while an entry by hand, of whatever task, was made after now.
bool PeriodCloser::isClockTrusted() {
  if (!isClockTrusted_) {
    PredicateParts parts;
    parts.add("%K > %@", {"createdTimestamp", Date::now()});
    parts.add("%K IN %@", {"entryType", rawValuesOf(TaskLogEntryTypes::allManualTypes)});
    NSFetchRequest request{std::string(Entry::entityName())};
    request.setPredicate(std::move(parts).all());
    request.setFetchLimit(1);
    const auto newer = context_.fetch<Entry>(request);
    if (!newer) Log::database.error(newer.error());
    isClockTrusted_ = newer && newer->empty();
  }
  return *isClockTrusted_;
}

PeriodCloser::Entries PeriodCloser::entriesAhead(const TaskEntity& task) {
  const auto id = task.taskUniqueId();
  if (!id) return {};
  const YYYYMMDD day = today(task);
  // Where fortnights overlap, another one that has not ended may have begun a week before.
  constexpr std::int64_t week = 7;
  auto entries = task.entriesOrNone({.minDate = task.currentPeriod().period.startDate.add(-week),
                                     .includeStatuses = TaskLogEntryTypes::allAutomaticTypes});
  std::erase_if(entries, [&](const auto& entry) { return !closesPeriodAhead(*entry, *id, day); });
  return entries;
}

PeriodCloser::Changes PeriodCloser::changesOf(const TaskEntity& task) {
  Changes changes;
  if (task.taskShareStatus() == TaskShareStatus::isSharedWithMe) return changes;
  auto processed = task.value(TaskAttributes::lastProcessedDate);
  const bool isAhead = processed && *processed > Date::now();
  if ((isAhead || mayBeAhead(task)) && !Environment::current().isTimeGiven()) {
    auto ahead = entriesAhead(task);
    if ((isAhead || !ahead.empty()) && isClockTrusted()) {
      changes.ahead = std::move(ahead);
      changes.isProcessed = isAhead;
      if (isAhead) processed = Date::now();
    }
  }
  const TaskLogRules rules = task.logRules();
  const YYYYMMDD created = task.createdDay();
  const PeriodClosings due{.rules = rules,
                           .status = task.taskStatus(),
                           .shareStatus = task.taskShareStatus(),
                           .since = processed ? dayOf(task, *processed) : created,
                           .createdDay = created};
  const bool isAnyDue = due.isAnyDue();
  changes.isProcessed |= isAnyDue || !processed;
  // Whoever takes a task out of the trash has missed nothing while it was there.
  if (!isAnyDue || task.taskStatus() == TaskStatus::trashed) return changes;
  const StoredLog log(task, {.direction = Direction::newestToOldest, .minDate = due.firstDay()});
  changes.closings = due.fromLog(log.rows());
  if (changes.ahead.empty()) {
    changes.temporal = afterClosing(task.temporalData(), log.rows(), rules, changes.closings);
  }
  return changes;
}

bool PeriodCloser::close(TaskEntity& task) {
  const Changes changes = changesOf(task);
  for (const auto& entry : changes.ahead) context_.deleteObject(*entry);
  write(task, changes.closings);
  if (changes.isProcessed) task.setValue(TaskAttributes::lastProcessedDate, Date::now());
  return changes.isLogChanged();
}

std::vector<PeriodClosing> PeriodCloser::foresee(TaskEntity& task) {
  Changes changes = changesOf(task);
  const bool hasRow = task.value(TaskAttributes::taskTemporalData) != nullptr;
  if (!changes.isLogChanged() && hasRow) return {};
  TaskEntity::Outlook outlook{.temporal = hasRow ? changes.temporal : std::nullopt};
  const Date now = Date::now();
  for (const PeriodClosing& closing : changes.closings | std::views::reverse) {
    outlook.added.push_back(closing.row(now));
  }
  for (const auto& entry : changes.ahead) outlook.withdrawn.insert(entry->objectID());
  const bool isWalkNeeded = !outlook.temporal;
  task.setOutlook(outlook);
  if (isWalkNeeded) {
    outlook.temporal = task.temporalDataFromLog(today(task), task.taskCurrentTimeZone());
    task.setOutlook(std::move(outlook));
  }
  return std::move(changes.closings);
}

void bringUpToDate(TaskEntity& task) {
  const bool isNew = task.value(TaskAttributes::taskTemporalData) == nullptr;
  const bool isChanged = PeriodCloser(*task.managedObjectContext()).close(task);
  if (isChanged || isNew) updateDerivedData(task);
}

}  // namespace velloro
