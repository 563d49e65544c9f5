#include "Host/NotificationUpdates.h"

#include "DataManager/DataManager.h"
#include "Foundation/Files/NSUserDefaults.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Process/MainLoop.h"
#include "Foundation/Text/Locale.h"
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
#include "Tasks/Rows/TaskTimerEntity.h"
#include "UserNotifications/UNUserNotificationCenter.h"

#include <set>
#include <string>
#include <utility>

namespace velloro {
namespace {

constexpr const char* plannedForKey = "NotificationManager.PlannedFor";

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
  return text(NotificationManager::notificationManagerVersion) + "|" +
         YYYYMMDD::today(startOfDay, zone, Date::now()).debugDescription() + "|" +
         std::string(zone.identifier()) + "|" + Locale::current().identifier() + "|" +
         text(startOfDay.intValue()) + "|" + text(rawValue(settings.firstDayOfWeek())) + "|" +
         text(settings.snoozeDuration()) + "|" + text(settings.taskCountBadgeEnabled());
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

void NotificationUpdates::bringUpToDate() {
  if (!mayNotify()) return;
  const bool isOutOfDate =
      NSUserDefaults::standardUserDefaults().stringForKey(plannedForKey) != present();
  if (touched_.empty() && withdrawn_ == ScheduleRequest{} && !isOutOfDate) return;
  try {
    endSnoozes();
    auto& manager = NotificationManager::shared();
    wait([&](Block done) { manager.readAuthorization(std::move(done)); });
    if (isOutOfDate) {
      rebuild();
    } else {
      planTouched();
    }
  } catch (const Error& error) {
    Log::notifications.error(error);
  }
  UNUserNotificationCenter::currentNotificationCenter().flush();
}

/// What is over is told to the log first, so that the plan knows it.
void NotificationUpdates::rebuild() {
  const HostStore store;
  const Date now = Date::now();
  store.write([&] {
    for (const auto& task : store.tasks(activeStatuses)) velloro::bringUpToDate(*task, now);
  });
  wait([&](Block done) {
    NotificationManager::shared().rebuildNotifications(false, std::move(done));
  });
  scheduleRunningTimers(store, now);
  touched_.clear();
  withdrawn_ = {};
  NSUserDefaults::standardUserDefaults().setObject(present(), plannedForKey);
}

void NotificationUpdates::planTouched() {
  auto& manager = NotificationManager::shared();
  std::set<NSManagedObjectID> ids;
  for (const auto& [key, task] : touched_) ids.insert(task->objectID());
  touched_.clear();
  wait([&](Block done) { manager.schedule(std::exchange(withdrawn_, {}), std::move(done)); });
  wait([&](Block done) { manager.updateBadges(std::move(done)); });
  wait([&](Block done) {
    manager.scheduleNotificationsForTasksImmediate(std::move(ids), std::move(done));
  });
}

void NotificationUpdates::endSnoozes() {
  for (const auto& [key, task] : touched_) {
    if (isSettled(*task)) withdrawn_.merge(endSnooze(task->uniqueId()));
  }
}

void NotificationUpdates::rebuildAll() {
  auto& manager = NotificationManager::shared();
  // What is known to be allowed is no reason for the manager to rebuild by itself.
  wait([&](Block done) { manager.readAuthorization(std::move(done)); });
  wait([&](Block done) { manager.requestAuthorization(true, std::move(done)); });
  if (manager.featureAlertEnabled() != NotificationManager::FeatureFlag::enabled) {
    throw HostError("notifications are not allowed");
  }
  rebuild();
  UNUserNotificationCenter::currentNotificationCenter().flush();
}

}  // namespace velloro
