#include "Host/TimedTaskHost.h"

#include "Foundation/Text/String.h"
#include "Host/LogWriter.h"
#include "Host/PeriodCloser.h"
#include "OxLog/Log.h"
#include "Tasks/Log/StoredEntries.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskTimerEntity.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "TimedTasks/TimedTaskNotifications.h"
#include "UserNotifications/UNUserNotificationCenter.h"
#include "VelloroCore/Reminders/TaskNotificationSettings.h"

#include <algorithm>

namespace velloro {
namespace {

using Run = TimedTaskManagerEntry;
using Row = TaskTimerEntity;

bool isLogged(const TaskEntity& task, const Run& run) {
  return !entriesOrNone(task, {.uniqueIds = {run.entryId}}).empty();
}

void insertRow(TaskEntity& task, const Run& run) {
  const auto row = Row::create(*task.managedObjectContext());
  row->setValue(Row::entryId, run.entryId);
  row->setValue(Row::entryDate, run.period.date);
  row->setValue(Row::entryPeriodFrom, run.period.period.startDate);
  row->setValue(Row::entryPeriodTo, run.period.period.finishDate);
  row->setValue(Row::entryPeriodType, run.period.period.periodType);
  row->setValue(Row::start, run.start);
  row->setValue(Row::finish, run.end);
  row->setValue(Row::task, std::static_pointer_cast<TaskEntity>(task.shared_from_this()));
}

void removeRow(TaskEntity& task, const Run& run) {
  const auto rows = task.value(TaskAttributes::taskTimer);
  for (const auto& row : rows) {
    if (row->value(Row::entryId) == run.entryId) task.managedObjectContext()->deleteObject(*row);
  }
}

/// As if only the log counted: of a timer on another device nothing is known to be done.
std::optional<TaskProgressTimer> timerProgress(const TaskEntity& task, Date now) {
  TaskStanding standing = TaskSnapshot::of(task, now).standing;
  standing.runningTimer.reset();
  const TaskProgress progress = standing.progress(standing.currentPeriod().period);
  const auto* timer = progress.as<TaskProgressTimer>();
  return timer != nullptr ? std::optional(*timer) : std::nullopt;
}

/// What is left of the completion under way; of one that is done the next one takes as long.
TimeInterval durationOfRun(const TaskEntity& task, Date now) {
  const std::string title = inQuotes(task.title());
  const TaskStatus status = task.taskStatus();
  if (status == TaskStatus::archived || status == TaskStatus::trashed) {
    throw HostError(title + " is " + (status == TaskStatus::archived ? "archived" : "deleted") +
                    "; \"velloro task resume\" brings it back");
  }
  const auto timer = timerProgress(task, now);
  if (!timer) {
    throw HostError(title + " is not timed; \"velloro task edit --timer SECONDS\" makes it so");
  }
  const TimeInterval left = timer->remainingDurationCurrentCompletion();
  const TimeInterval duration = left > 0 ? left : timer->durationPerCompletion();
  if (!(duration > 0)) throw HostError(title + " has no duration that a timer could run");
  return duration;
}

/// Null for a task that is no longer timed: no amount of it is a duration.
std::shared_ptr<TaskLogEntryEntity> addTimedEntry(TaskEntity& task, const NewLogEntry& entry,
                                                  Date now) {
  if (timerProgress(task, now)) return addLogEntry(task, entry, now);
  Log::general.error([&] { return inQuotes(task.title()) + " is no longer timed"; });
  return nullptr;
}

/// The next tap, for as long as the timer ran. A clock that was set back gives no entry of the
/// future.
NewLogEntry completion(const Run& run, Date now) {
  return {.date = run.period.date,
          .at = std::min(run.end, now),
          .timed = run.end.timeIntervalSince(run.start),
          .id = run.entryId};
}

/// Unless the user does not want to be told.
void schedule(const std::vector<NotificationContent>& contents) {
  if (contents.empty()) return;
  auto center = UNUserNotificationCenter::currentNotificationCenter();
  bool isAllowed = false;
  center.getNotificationSettingsWithCompletionHandler([&](const UNNotificationSettings& settings) {
    isAllowed = settings.authorizationStatus == UNAuthorizationStatus::authorized;
  });
  center.flush();
  if (!isAllowed) return;
  for (const auto& content : contents) center.addNotificationRequest(content.request());
  center.flush();
}

}  // namespace

TimedTaskHost::Started TimedTaskHost::start(Find find, Date now) {
  TimedTaskManager& manager = TimedTaskManager::shared();
  std::optional<UniqueID> added;
  const auto begin = [&]() -> Started {
    const auto task = find();
    bringUpToDate(*task, now);
    const Run run{.entryId = UniqueID::create(),
                  .taskIdentifier = task->uniqueId(),
                  .period = task->currentPeriod(now),
                  .start = now,
                  .end = now + durationOfRun(*task, now)};
    // A process that was killed may have logged a run and left it in the list.
    const auto former = manager.entry(run.taskIdentifier);
    if (former && isLogged(*task, *former)) manager.stop(former->entryId);
    manager.start(run);
    added = run.entryId;
    insertRow(*task, run);
    return {task, run};
  };
  try {
    const Started started = store_.write(begin);
    added.reset();
    schedule(timedTaskNotifications(*started.task, started.run, now));
    return started;
  } catch (...) {
    if (added) manager.stop(*added);
    throw;
  }
}

std::optional<TimedTaskHost::Stopped> TimedTaskHost::stop(Find find, bool isKept, Date now) {
  const auto end = [&]() -> std::optional<Stopped> {
    const auto task = find();
    const auto run = TimedTaskManager::shared().entry(task->uniqueId());
    if (!run) return std::nullopt;
    Stopped stopped{.task = task, .run = *run};
    stopped.ran =
        std::clamp(now.timeIntervalSince(run->start), 0.0, run->end.timeIntervalSince(run->start));
    removeRow(*task, *run);
    // A process that was killed may have logged it.
    if (!isKept || stopped.ran == 0 || isLogged(*task, *run)) return stopped;
    PeriodCloser(store_.context(), now).close(*task);
    stopped.entry = addTimedEntry(*task,
                                  {.type = TaskLogEntryType::timerManual,
                                   .date = run->period.date,
                                   .at = now,
                                   .timed = stopped.ran,
                                   .id = run->entryId},
                                  now);
    updateDerivedData(*task, now);
    return stopped;
  };
  auto stopped = store_.write(end);
  if (stopped) {
    TimedTaskManager::shared().stop(stopped->run.entryId);
    cancelTimedTaskNotifications(*stopped->task, stopped->run.period, [] {});
  }
  return stopped;
}

void TimedTaskHost::timerExpired(const Run& run, const UniqueID& taskIdentifier) {
  const Date now = Date::now();
  store_.write([&] {
    const auto task = store_.task(taskIdentifier);
    if (task == nullptr) return;
    removeRow(*task, run);
    if (isLogged(*task, run)) return;
    addTimedEntry(*task, completion(run, now), now);
    PeriodCloser(store_.context(), now).close(*task);
    updateDerivedData(*task, now);
  });
}

LiveActivityDisplayMode TimedTaskHost::liveActivityDisplayMode(
    const UniqueID& taskIdentifier) const {
  const auto task = store_.task(taskIdentifier);
  const auto mode = task != nullptr ? task->notificationSettings().liveActivityDisplayMode
                                    : LiveActivityDisplayMode::no;
  return mode.value_or(LiveActivityDisplayMode::automatic);
}

void logExpiredRuns(const HostStore& store) {
  TimedTaskManager& manager = TimedTaskManager::shared();
  std::shared_ptr<TimedTaskHost> host;
  if (manager.delegate.expired()) {
    host = std::make_shared<TimedTaskHost>(store);
    manager.delegate = host;
  }
  manager.processCurrentTimers();
}

void scheduleRunningTimers(const HostStore& store, Date now) {
  for (const Run& run : TimedTaskManager::shared().entries()) {
    const auto task = run.end > now ? store.task(run.taskIdentifier) : nullptr;
    if (task != nullptr) schedule(timedTaskNotifications(*task, run, now));
  }
}

void foreseeExpiredRuns(TaskEntity& task, const std::vector<Run>& runs, Date now) {
  const auto id = runs.empty() ? std::nullopt : task.taskUniqueId();
  for (const Run& run : runs) {
    if (run.taskIdentifier != id || run.end > now || isLogged(task, run)) continue;
    removeRow(task, run);
    addTimedEntry(task, completion(run, now), now);
    updateDerivedData(task, now);
  }
}

}  // namespace velloro
