#include "Notifications/Planning/NotificationManager.h"

#include "DataManager/DataManager.h"
#include "Notifications/NotificationCategory.h"
#include "Notifications/Planning/BackgroundTask.h"
#include "Notifications/Planning/BadgePlan.h"
#include "Notifications/Planning/NotificationPlanner.h"
#include "OxLog/Log.h"
#include "Settings/RunTarget.h"
#include "Settings/Settings.h"
#include "Settings/SiriExtensionUtilities.h"
#include "Tasks/Reminders/AutomaticReminders.h"
#include "Tasks/Requests/TaskFetchRequest.h"
#include "Tasks/Rows/TaskEntity.h"
#include "UserNotifications/UNUserNotificationCenter.h"

#include <algorithm>
#include <utility>

namespace velloro {
namespace {

using Tasks = NotificationPlanner::Tasks;

void callOnMain(Block completion) {
  if (completion) DispatchQueue::main().async(std::move(completion));
}

/// Calls each of the blocks.
Block joined(std::vector<Block> blocks) {
  return [blocks = std::move(blocks)]() mutable {
    for (Block& block : blocks) {
      if (block) block();
    }
  };
}

Tasks activeTasks(NSManagedObjectContext& context) {
  const TaskFetchRequest request{.includeStatuses = activeStatuses};
  auto tasks = context.fetch<TaskEntity>(request.fetchRequest());
  if (tasks) return *std::move(tasks);
  Log::notifications.error(tasks.error());
  return {};
}

/// Those that there still are.
Tasks tasksOf(NSManagedObjectContext& context, const std::set<NSManagedObjectID>& ids) {
  Tasks tasks;
  for (const NSManagedObjectID id : ids) {
    auto task = std::static_pointer_cast<TaskEntity>(context.objectWithID(id));
    if (task->taskUniqueId()) tasks.push_back(std::move(task));
  }
  return tasks;
}

NotificationPlanner plannerOf(NSManagedObjectContext& context) {
  return NotificationPlanner(context, {.now = Date::now()},
                             [] { return Environment::current().random(); });
}

NotificationManager::FeatureFlag flag(bool isEnabled) {
  return isEnabled ? NotificationManager::FeatureFlag::enabled
                   : NotificationManager::FeatureFlag::notEnabled;
}

}  // namespace

NotificationManager& NotificationManager::shared() {
  static auto* const instance =
      new NotificationManager(DataManager::shared(), SiriExtensionUtilities::shared());
  return *instance;
}

NotificationManager::NotificationManager(DataManager& manager,
                                         std::shared_ptr<SiriExtensionUtilities> siri)
    : dataManager_(manager), siri_(std::move(siri)) {}

void NotificationManager::requestAuthorization(bool force, Block completion) {
  if (notificationMode == NotificationManagerMode::none) return callOnMain(std::move(completion));
  SettingsStorage& storage = SettingsStorage::shared();
  if (!storage.boolean(Setting::nmCanPromptForNotifications) && !force) {
    Log::notifications.info([] { return "Cannot prompt for authorization"; });
    return callOnMain(std::move(completion));
  }
  storage.setBoolean(true, Setting::nmCanPromptForNotifications);
  queue_.async([] {
    auto center = UNUserNotificationCenter::currentNotificationCenter();
    center.requestAuthorizationWithOptions(UNAuthorizationOptions::alert |
                                           UNAuthorizationOptions::sound |
                                           UNAuthorizationOptions::badge);
  });
  const bool wereBothEnabled =
      featureAlertEnabled_ == FeatureFlag::enabled && featureBadgeEnabled_ == FeatureFlag::enabled;
  readAuthorization([this, wereBothEnabled, completion = std::move(completion)]() mutable {
    const bool isOneEnabled = featureAlertEnabled_ == FeatureFlag::enabled ||
                              featureBadgeEnabled_ == FeatureFlag::enabled;
    if (!wereBothEnabled && isOneEnabled) return rebuildNotifications(false, std::move(completion));
    if (completion) completion();
  });
}

void NotificationManager::readAuthorization(Block completion) {
  queue_.async([this, completion = std::move(completion)]() mutable {
    auto center = UNUserNotificationCenter::currentNotificationCenter();
    center.setNotificationCategories(notificationCategories());  // in the present language
    center.getNotificationSettingsWithCompletionHandler(
        [this, completion = std::move(completion)](const UNNotificationSettings& read) mutable {
          DispatchQueue::main().async([this, read, completion = std::move(completion)]() mutable {
            setFeatures(read);
            if (completion) completion();
          });
        });
  });
}

void NotificationManager::setFeatures(const UNNotificationSettings& settings) {
  using enum UNNotificationSetting;
  const bool isAllowed = settings.authorizationStatus != UNAuthorizationStatus::denied;
  featureAlertEnabled_ = flag(isAllowed && (settings.alertSetting == enabled ||
                                            settings.lockScreenSetting == enabled ||
                                            settings.notificationCenterSetting == enabled));
  featureBadgeEnabled_ = flag(isAllowed && settings.badgeSetting == enabled);
  featureSoundEnabled_ = flag(isAllowed && settings.soundSetting == enabled);
}

void NotificationManager::rebuildNotificationsDelayed(Block completion) {
  invalidateTimers();
  rebuildCompletions_.push_back(std::move(completion));
  if (Environment::current().applicationState() != ApplicationState::active) {
    Log::notifications.info([] { return "Triggering immediately"; });
    return rebuildNotifications(false);
  }
  Log::notifications.info([] { return "Setting timer"; });
  rebuildTimer_ = NSTimer::scheduled(rebuildDelay, false, [this] { rebuildNotifications(false); });
}

/// Learns the automatic times and writes them, clears the centre, and plans from what was written.
void NotificationManager::rebuildNotifications(bool force, Block completion) {
  rebuildCompletions_.push_back(std::move(completion));
  Block done = joined(std::exchange(rebuildCompletions_, {}));
  if (dataManager_.inMaintenanceMode()) return callOnMain(std::move(done));
  invalidateTimers();
  auto plan = [this, done = std::move(done), force]() mutable {
    clearAllNotifications(force);
    if (notificationMode == NotificationManagerMode::none) return done();
    if (didRebuild) didRebuild();
    updateBadges();
    scheduleTasks(std::nullopt, std::move(done));
  };
  inBackground(
      [](NSManagedObjectContext& context) {
        const auto written = rebuildAutomaticReminders(context, Date::now());
        if (!written) Log::notifications.error(written.error());
      },
      std::move(plan));
}

void NotificationManager::scheduleNotificationsForTasksImmediate(TaskIDs tasks, Block completion) {
  if (notificationsUpdateTasks_) {
    notificationsUpdateTasks_->merge(tasks);
    tasks = *notificationsUpdateTasks_;
  }
  scheduleTasks(std::move(tasks), std::move(completion));
}

bool NotificationManager::mayPlan() const {
  if (dataManager_.inMaintenanceMode() || notificationMode == NotificationManagerMode::none ||
      !isExtensionOrMayPrompt()) {
    return false;
  }
  if (featureAlertEnabled_ == FeatureFlag::enabled) return true;
  Log::notifications.info([] { return "Cannot send local notifications"; });
  return false;
}

bool NotificationManager::isExtensionOrMayPrompt() {
  return isExtension() || SettingsStorage::shared().boolean(Setting::nmCanPromptForNotifications);
}

void NotificationManager::scheduleTasks(std::optional<TaskIDs> ids, Block completion) {
  if (!mayPlan()) return callOnMain(std::move(completion));
  const auto request = std::make_shared<ScheduleRequest>();
  inBackground(
      [this, ids = std::move(ids), request](NSManagedObjectContext& context) {
        const Tasks tasks = ids ? tasksOf(context, *ids) : activeTasks(context);
        if (tasks.empty()) return Log::notifications.info([] { return "No tasks"; });
        const NotificationPlanner planner = plannerOf(context);
        *request = planner.tasks(tasks);
        if (ids) request->merge(planner.leftovers(tasks));
        determineCurrentSiriNotifications(context, [&](std::vector<NotificationContent> contents) {
          request->merge({.notifications = std::move(contents)});
        });
      },
      [this, request, completion = std::move(completion)]() mutable {
        schedule(std::move(*request), std::move(completion));
      });
}

void NotificationManager::determineCurrentSiriNotifications(
    NSManagedObjectContext& context,
    const std::function<void(std::vector<NotificationContent>)>& completion) const {
  const auto reminders = siri_ ? siri_->siriReminders() : SiriExtensionUtilities::SiriReminders{};
  if (reminders.empty()) return completion({});
  Log::notifications.info([&] {
    std::string list;
    for (const auto& reminder : reminders) {
      list += (list.empty() ? "" : ", ") + reminder.debugDescription();
    }
    return "Scheduling Siri reminders: [" + list + "]";
  });
  completion(plannerOf(context).siriReminders(activeTasks(context), reminders).notifications);
}

void NotificationManager::scheduleNotificationsForTasksDelayedTimerTriggered() {
  notificationsUpdateTimer_.invalidate();
  if (auto tasks = std::exchange(notificationsUpdateTasks_, std::nullopt)) {
    scheduleNotificationsForTasksImmediate(*std::move(tasks));
  }
}

void NotificationManager::updateBadges(Block completion) {
  const bool isShown = isExtensionOrMayPrompt() && featureBadgeEnabled_ == FeatureFlag::enabled &&
                       Settings::shared().taskCountBadgeEnabled();
  if (!isShown) return schedule(BadgePlan(Date::now()).cancels(), std::move(completion));
  const auto request = std::make_shared<ScheduleRequest>();
  inBackground(
      [request](NSManagedObjectContext& context) {
        *request = plannerOf(context).badges(activeTasks(context));
      },
      [this, request, completion = std::move(completion)]() mutable {
        schedule(std::move(*request), std::move(completion));
      });
}

void NotificationManager::clearAllNotifications(bool clearDelivered) {
  if (notificationMode == NotificationManagerMode::none) return;
  Log::notifications.info([] { return "Clearing all notifications"; });
  queue_.async([clearDelivered] {
    auto center = UNUserNotificationCenter::currentNotificationCenter();
    center.removeAllPendingNotificationRequests();
    if (clearDelivered) center.removeAllDeliveredNotifications();
  });
}

void NotificationManager::schedule(ScheduleRequest request, Block completion) const {
  if (notificationMode == NotificationManagerMode::none) return callOnMain(std::move(completion));
  queue_.async([request = std::move(request), completion = std::move(completion)]() mutable {
    const ScheduleRequest left = std::move(request).at(Date::now());
    auto center = UNUserNotificationCenter::currentNotificationCenter();
    center.removePendingNotificationRequestsWithIdentifiers(
        {left.cancelPending.begin(), left.cancelPending.end()});
    center.removeDeliveredNotificationsWithIdentifiers(
        {left.cancelDelivered.begin(), left.cancelDelivered.end()});
    for (const auto& content : left.notifications) {
      center.addNotificationRequest(content.request());
    }
    callOnMain(std::move(completion));
  });
}

void NotificationManager::applicationDidBecomeActive() {
  if (std::exchange(hasPreviouslyBecomeActive_, true)) requestAuthorization(false);
}

void NotificationManager::applicationWillResignActive() {
  const bool rebuilds = rebuildTimer_.isValid();
  const bool badges = badgeUpdateTimer_.isValid();
  const bool updates = notificationsUpdateTimer_.isValid();
  const TaskIDs tasks = notificationsUpdateTasks_.value_or(TaskIDs{});
  invalidateTimers();
  const std::size_t count = updates ? std::max<std::size_t>(tasks.size(), 1) : tasks.size();
  const auto update = [&](const std::string& what) {
    Log::notifications.info([&] { return "Updating " + what + "..."; });
    return [task = BackgroundTask()] {};
  };
  if (rebuilds) {
    rebuildNotifications(false, update("all notifications"));
  } else if (badges && updates) {
    updateBadges();
    scheduleNotificationsForTasksImmediate(
        tasks, update("badges and tasks(" + std::to_string(count) + ")"));
  } else if (badges) {
    updateBadges(update("badges"));
  } else if (updates) {
    scheduleNotificationsForTasksImmediate(tasks, update("tasks(" + std::to_string(count) + ")"));
  }
}

void NotificationManager::calendarDayDidChange() {
  if (notificationMode == NotificationManagerMode::none) return;
  queue_.async([this] { callOnMain([this] { rebuildNotifications(false); }); });
}

void NotificationManager::invalidateTimers() {
  rebuildTimer_.invalidate();
  badgeUpdateTimer_.invalidate();
  notificationsUpdateTimer_.invalidate();
}

void NotificationManager::inBackground(std::function<void(NSManagedObjectContext&)> work,
                                       Block completion) const {
  dataManager_.performBackgroundTask([work = std::move(work), completion = std::move(completion)](
                                         NSManagedObjectContext& context) mutable {
    work(context);
    callOnMain(std::move(completion));
  });
}

}  // namespace velloro
