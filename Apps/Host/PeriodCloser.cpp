#include "Host/PeriodCloser.h"

#include "Foundation/Process/Environment.h"
#include "Foundation/Text/String.h"
#include "Host/HealthReader.h"
#include "Host/HostStore.h"
#include "Host/LogEntryRow.h"
#include "Host/LogWriter.h"
#include "Host/TimedTaskHost.h"
#include "OxLog/Log.h"
#include "Tasks/Log/StoredEntries.h"
#include "Tasks/Log/StoredLog.h"
#include "Tasks/Log/StoredTemporalData.h"
#include "Tasks/Log/TaskOutlook.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"
#include "Tasks/Status/StoredTaskStatus.h"
#include "Tasks/Status/TaskSnapshot.h"

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
  bool isProcessed = false;   ///< Whether the day is to be remembered.
  std::string obstacle = {};  ///< Why nothing can be closed; empty if it can.

  [[nodiscard]] bool isLogChanged() const { return !ahead.empty() || !closings.empty(); }
};

namespace {

/// Whether what is kept of the log tells of an entry of a kind that closes periods, in the current
/// one or later.
bool mayBeAhead(const TaskStanding& task) {
  const TaskTemporalData& kept = task.temporal;
  const auto newest =
      std::max(task.isNegative ? kept.lastCompleted : kept.lastMissed, kept.lastSkipped);
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

/// Before it no period is closed, whatever a damaged row says of when its task was made.
constexpr YYYYMMDD earliestClosed{.y = 1970, .m = 1, .d = 1};

/// A clock that is centuries ahead would fill the log with entries, one for each period. Empty
/// where it is not.
std::string obstacleOf(const TaskEntity& task, YYYYMMDD from, YYYYMMDD today) {
  constexpr std::int64_t mostYears = 150;
  if (today.y - from.y <= mostYears) return "";
  return "the log of " + inQuotes(task.title()) + " reaches " + from.debugDescription() +
         ", more than " + std::to_string(mostYears) + " years before " + today.debugDescription() +
         ": check the clock or --now";
}

void write(TaskEntity& task, const std::vector<PeriodClosing>& closings, Date now) {
  if (closings.empty()) return;
  const auto there =
      entriesByID(entriesOrNone(task, {.minDate = closings.front().period.startDate,
                                       .includeStatuses = TaskLogEntryTypes::allAutomaticTypes}));
  const auto own = task.taskUniqueId();
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
    auto request = NSFetchRequest::of<Entry>(
        Entry::createdTimestamp > now_ && Entry::entryType.in(TaskLogEntryTypes::allManualTypes));
    request.setFetchLimit(1);
    const auto newer = context_.fetch<Entry>(request);
    if (!newer) Log::database.error(newer.error());
    isClockTrusted_ = newer && newer->empty();
  }
  return *isClockTrusted_;
}

PeriodCloser::Entries PeriodCloser::entriesAhead(const TaskEntity& task,
                                                 const TaskLogRules& rules) {
  const auto id = task.taskUniqueId();
  if (!id) return {};
  const YYYYMMDD today = rules.today();
  // Where fortnights overlap, another one that has not ended may have begun a week before.
  constexpr std::int64_t week = 7;
  auto entries =
      entriesOrNone(task, {.minDate = rules.startOfPeriod(today).add(-week, rules.timeZone),
                           .includeStatuses = TaskLogEntryTypes::allAutomaticTypes});
  std::erase_if(entries, [&](const auto& entry) { return !closesPeriodAhead(*entry, *id, today); });
  return entries;
}

PeriodCloser::Changes PeriodCloser::changesOf(const TaskEntity& task) {
  Changes changes;
  const auto snapshot = TaskSnapshot::of(task, now_);
  if (snapshot.shareStatus == TaskShareStatus::isSharedWithMe) return changes;
  auto processed = task.value(TaskAttributes::lastProcessedDate);
  const TaskLogRules rules = snapshot.standing.rules();
  const bool isAhead = processed && *processed > now_;
  if ((isAhead || mayBeAhead(snapshot.standing)) && !Environment::current().isTimeGiven()) {
    auto ahead = entriesAhead(task, rules);
    if ((isAhead || !ahead.empty()) && isClockTrusted()) {
      changes.ahead = std::move(ahead);
      changes.isProcessed = isAhead;
      if (isAhead) processed = now_;
    }
  }
  const YYYYMMDD created = createdDay(snapshot);
  const PeriodClosings due{
      .rules = rules,
      .status = snapshot.status,
      .shareStatus = snapshot.shareStatus,
      .since = std::max(
          earliestClosed,
          processed ? YYYYMMDD::fromDate(rules.startOfDay, *processed, rules.timeZone) : created),
      .createdDay = created};
  const bool isAnyDue = due.isAnyDue();
  changes.isProcessed |= isAnyDue || !processed;
  // Whoever takes a task out of the trash has missed nothing while it was there.
  if (!isAnyDue || snapshot.status == TaskStatus::trashed) return changes;
  changes.obstacle = obstacleOf(task, due.firstDay(), rules.today());
  if (!changes.obstacle.empty()) return changes;
  const StoredLog log(task, {.direction = Direction::newestToOldest, .minDate = due.firstDay()});
  changes.closings = due.fromLog(log.rows());
  if (changes.ahead.empty()) {
    changes.temporal =
        afterClosing(snapshot.standing.temporal, log.rows(), rules, changes.closings);
  }
  return changes;
}

bool PeriodCloser::close(TaskEntity& task) {
  const bool isRead =
      readHealthIntoLog(task, now_, HealthRange::changed, /*isSaved=*/true).isLogChanged;
  const Changes changes = changesOf(task);
  if (!changes.obstacle.empty()) throw HostError(changes.obstacle);
  for (const auto& entry : changes.ahead) context_.deleteObject(*entry);
  write(task, changes.closings, now_);
  if (changes.isProcessed) task.setValue(TaskAttributes::lastProcessedDate, now_);
  return isRead || changes.isLogChanged();
}

std::vector<PeriodClosing> PeriodCloser::foresee(TaskEntity& task) {
  if (!runs_) runs_ = TimedTaskManager::shared().entries();
  foreseeExpiredRuns(task, *runs_, now_);
  const HealthReading reading =
      readHealthIntoLog(task, now_, HealthRange::changed, /*isSaved=*/false);
  Changes changes = changesOf(task);
  if (reading.isLogChanged) changes.temporal.reset();
  if (!changes.obstacle.empty()) {
    Environment::current().report(terminalText(changes.obstacle));
    return {};
  }
  const bool hasRow = task.value(TaskAttributes::taskTemporalData) != nullptr;
  if (!changes.isLogChanged() && hasRow && !reading.isLogChanged) {
    keepHealthProgress(task, reading);
    return {};
  }
  TaskEntity::Outlook outlook{.temporal = hasRow ? changes.temporal : std::nullopt};
  for (const PeriodClosing& closing : changes.closings | std::views::reverse) {
    outlook.added.push_back(closing.row(now_));
  }
  for (const auto& entry : changes.ahead) outlook.withdrawn.insert(entry->objectID());
  const bool isWalkNeeded = !outlook.temporal;
  task.setOutlook(outlook);
  if (isWalkNeeded) {
    const auto snapshot = TaskSnapshot::of(task, now_);
    outlook.temporal =
        temporalDataFromLog(snapshot, snapshot.standing.today(), snapshot.standing.timeZone);
  }
  if (reading.progress) {
    outlook.temporal->progress = *reading.progress;
    outlook.temporal->progressDate = reading.periodStart;
  }
  if (isWalkNeeded || reading.progress) task.setOutlook(std::move(outlook));
  return std::move(changes.closings);
}

void bringUpToDate(TaskEntity& task, Date now) {
  const bool isNew = task.value(TaskAttributes::taskTemporalData) == nullptr;
  const bool isChanged = PeriodCloser(*task.managedObjectContext(), now).close(task);
  const auto type = task.automaticTaskType();
  if (isChanged || isNew || (type && type->usesHealthKit())) updateDerivedData(task, now);
}

}  // namespace velloro
