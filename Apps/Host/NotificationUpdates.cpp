#include "Host/NotificationUpdates.h"

#include "DataManager/DataManager.h"
#include "Foundation/Coding/JSON.h"
#include "Foundation/Files/NSUserDefaults.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Process/MainLoop.h"
#include "Foundation/Text/Locale.h"
#include "Host/HealthUpdates.h"
#include "Host/HostStore.h"
#include "Host/PeriodCloser.h"
#include "Host/Snooze.h"
#include "Host/TimedTaskHost.h"
#include "Notifications/Planning/NotificationManager.h"
#include "Notifications/Planning/NotificationPlanner.h"
#include "OxLog/Log.h"
#include "Settings/RunTarget.h"
#include "Settings/Settings.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/TaskNotificationRemindersEntity.h"
#include "Tasks/Rows/TaskNotificationSettingsEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"
#include "Tasks/Rows/TaskTimerEntity.h"
#include "TimedTasks/CalendarDayWatcher.h"
#include "UserNotifications/UNUserNotificationCenter.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace velloro {
namespace {

constexpr const char* plannedForKey = "NotificationManager.PlannedFor";
constexpr const char* plannedAtKey = "NotificationManager.PlannedAt";
constexpr const char* plannedUntilKey = "NotificationManager.PlannedUntil";
constexpr std::int64_t pagesWithOwnTheme = 4;

/// Runs the main loop until the completion that `work` is given was called.
template <std::invocable<Block> Work>
void wait(Work&& work) {
  MainLoop& loop = Environment::current().mainLoop();
  work(Block([&loop] { loop.stop(); }));
  loop.run();
}

/// What a plan depends on beside the tasks: one for another text is out of date.
std::string present() {
  const Settings& settings = Settings::shared();
  const TimeZone zone = TimeZone::current();
  const HHMMSS startOfDay = settings.startOfDay();
  const auto text = [](auto value) { return std::to_string(value); };
  std::string themes;
  for (std::int64_t page = 0; page < pagesWithOwnTheme; ++page) {
    themes += "|" + JSONEncoder{}.encode(settings.theme({page}));
  }
  return text(NotificationManager::notificationManagerVersion) + "|" +
         YYYYMMDD::today(startOfDay, zone, Date::now()).debugDescription() + "|" +
         std::string(zone.identifier()) + "|" + Locale::current().identifier() + "|" +
         text(startOfDay.intValue()) + "|" + text(rawValue(settings.firstDayOfWeek())) + "|" +
         text(settings.snoozeDuration()) + "|" + text(settings.taskCountBadgeEnabled()) + themes +
         "|" + DataManager::activeStoreUrl().string();
}

/// The end of the first logical day that is under way, by the tasks' own beginnings and zones.
Date nextDay(const std::vector<std::shared_ptr<TaskEntity>>& tasks, Date now) {
  return CalendarDayWatcher::DayStarts::of(tasks, Settings::shared().startOfDay()).nextChange(now);
}

/// The distant past where there is none.
Date keptDate(const char* key) {
  const auto kept = NSUserDefaults::standardUserDefaults().stringForKey(key);
  return (kept ? Date::fromISO8601(*kept) : std::nullopt).value_or(Date::distantPast());
}

void keepPlanned(Date at, Date until) {
  NSUserDefaults::standardUserDefaults().setObject(at.iso8601(), plannedAtKey);
  NSUserDefaults::standardUserDefaults().setObject(until.iso8601(), plannedUntilKey);
}

bool isOutOfDate(Date now) {
  return keptDate(plannedUntilKey) <= now ||
         NSUserDefaults::standardUserDefaults().stringForKey(plannedForKey) != present();
}

std::shared_ptr<TaskEntity> taskOf(const std::shared_ptr<NSManagedObject>& object) {
  const auto of = [&]<typename Row>(std::type_identity<Row>) -> std::shared_ptr<TaskEntity> {
    const auto row = std::dynamic_pointer_cast<Row>(object);
    return row ? row->value(Row::task) : nullptr;
  };
  if (auto task = std::dynamic_pointer_cast<TaskEntity>(object)) return task;
  if (auto task = of(std::type_identity<TaskLogEntryEntity>())) return task;
  if (auto task = of(std::type_identity<TaskNotificationSettingsEntity>())) return task;
  if (auto task = of(std::type_identity<TaskNotificationRemindersEntity>())) return task;
  return of(std::type_identity<TaskTimerEntity>());
}

bool mayNotify() {
  return !isExtension() && SettingsStorage::shared().boolean(Setting::nmCanPromptForNotifications);
}

}  // namespace

NotificationUpdates& NotificationUpdates::shared() {
  static auto* const instance = new NotificationUpdates;
  return *instance;
}

void NotificationUpdates::note(const NSManagedObjectContext& context) {
  hasWritten_ = true;
  if (!mayNotify()) return;
  for (const auto& object : context.deletedObjects()) {
    if (const auto task = taskOf(object)) note(task, task == object);
  }
  for (const auto& object : context.insertedObjects()) {
    if (const auto task = taskOf(object)) note(task, false);
  }
  for (const auto& object : context.updatedObjects()) {
    if (const auto task = taskOf(object)) note(task, false);
  }
}

void NotificationUpdates::note(const std::shared_ptr<TaskEntity>& task, bool isDeleted) {
  if (!isDeleted && activeStatuses.contains(task->taskStatus())) {
    touched_.try_emplace(task.get(), task);
    return;
  }
  touched_.erase(task.get());
  if (!task->taskUniqueId()) return;
  const NotificationPlanner planner(*task->managedObjectContext(), {.now = Date::now()},
                                    [] { return Environment::current().random(); });
  withdrawn_.merge(planner.cancels(*task));
  for (const auto& reminder : SiriExtensionUtilities::shared()->siriReminders()) {
    if (reminder.taskId != task->uniqueId()) continue;
    withdrawn_.cancelPending.insert(NotificationID::spoken(reminder.uniqueId, reminder.taskId).str);
  }
}

void NotificationUpdates::noteEverything() {
  hasWritten_ = true;
  NSUserDefaults::standardUserDefaults().removeObjectForKey(plannedForKey);
}

void NotificationUpdates::bringUpToDate() {
  if (!std::exchange(hasWritten_, false)) return;
  const Date now = Date::now();
  try {
    if (!isExtension()) readChangedHealth(now);
    hasWritten_ = false;
    if (!mayNotify()) return;
    wait([](Block done) { NotificationManager::shared().readAuthorization(std::move(done)); });
    if (isOutOfDate(now)) {
      rebuild(now);
    } else {
      planTouched(now);
    }
  } catch (const Error& error) {
    Log::notifications.error(error);
  }
  UNUserNotificationCenter::currentNotificationCenter().flush();
}

/// What is over is told to the log first, so that the plan knows it.
void NotificationUpdates::rebuild(Date now) {
  // What is pending stays until the new plan is made.
  const auto together = UNUserNotificationCenter::currentNotificationCenter().holdChanges();
  const HostStore store;
  store.write([&] {
    for (const auto& task : store.tasks(activeStatuses)) velloro::bringUpToDate(*task, now);
  });
  // What is noted from now on, while the main loop runs, may be newer than what is planned here.
  touched_.clear();
  hasWritten_ = false;
  endSnoozes(store, now);
  withdrawFromCenter();
  wait([](Block done) {
    NotificationManager::shared().rebuildNotifications(false, std::move(done));
  });
  scheduleRunningTimers(store, now);
  wait([](Block done) { NotificationManager::shared().schedule({}, std::move(done)); });
  NSUserDefaults::standardUserDefaults().setObject(present(), plannedForKey);
  keepPlanned(now, nextDay(store.tasks(activeStatuses), now));
}

void NotificationUpdates::planTouched(Date now) {
  const auto together = UNUserNotificationCenter::currentNotificationCenter().holdChanges();
  const HostStore store;
  noteWrittenElsewhere(store);
  endSnoozes(store, now);
  auto& manager = NotificationManager::shared();
  std::set<NSManagedObjectID> ids;
  std::vector<std::shared_ptr<TaskEntity>> tasks;
  for (const auto& [key, task] : std::exchange(touched_, {})) {
    ids.insert(task->objectID());
    tasks.push_back(task);
  }
  withdrawFromCenter();
  wait([&](Block done) { manager.updateBadges(std::move(done)); });
  wait([&](Block done) {
    manager.scheduleNotificationsForTasksImmediate(std::move(ids), std::move(done));
  });
  keepPlanned(now, std::min(keptDate(plannedUntilKey), nextDay(tasks, now)));
}

/// An extension writes to the log and leaves planning to this process.
void NotificationUpdates::noteWrittenElsewhere(const HostStore& store) {
  using Derived = TaskTemporalDataEntity;
  const auto since = keptDate(plannedAtKey);
  const auto written = store.context().fetch<Derived>(
      NSFetchRequest::of<Derived>(Derived::lastUpdated >= since, {}));
  if (!written)
    throw HostError("the log can't be read: " + written.error()->localizedDescription());
  for (const auto& row : *written) {
    if (const auto task = row->value(Derived::task)) note(task);
  }
}

/// Also those of tasks that another process has finished.
void NotificationUpdates::endSnoozes(const HostStore& store, Date now) {
  for (const UniqueID& id : snoozedTasks()) {
    const auto task = store.task(id);
    if (task == nullptr || isSettled(*task, now)) withdraw(endSnooze(id));
  }
}

void NotificationUpdates::withdrawFromCenter() {
  if (withdrawn_ == ScheduleRequest{}) return;
  wait([&](Block done) {
    NotificationManager::shared().schedule(std::exchange(withdrawn_, {}), std::move(done));
  });
}

void NotificationUpdates::rebuildAll() {
  auto& manager = NotificationManager::shared();
  // What is known to be allowed is no reason for the manager to rebuild by itself.
  wait([&](Block done) { manager.readAuthorization(std::move(done)); });
  wait([&](Block done) { manager.requestAuthorization(true, std::move(done)); });
  if (manager.featureAlertEnabled() != NotificationManager::FeatureFlag::enabled) {
    throw HostError("notifications are not allowed");
  }
  rebuild(Date::now());
  UNUserNotificationCenter::currentNotificationCenter().flush();
}

}  // namespace velloro
