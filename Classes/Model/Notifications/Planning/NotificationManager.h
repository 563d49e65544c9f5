#pragma once

#include "CoreData/Model/PropertyValue.h"
#include "Foundation/Dispatch/Block.h"
#include "Foundation/Dispatch/DispatchQueue.h"
#include "Foundation/Dispatch/NSTimer.h"
#include "Foundation/Time/Date.h"
#include "Notifications/Planning/NotificationHelper.h"
#include "OxKit/Platform.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace platform {
class NSManagedObjectContext;
struct UNNotificationSettings;
}  // namespace platform

namespace velloro {

class DataManager;
class SiriExtensionUtilities;

/// Whether this process schedules notifications at all.
enum class NotificationManagerMode : std::uint8_t { current, none };

/// Schedules the local notifications of all tasks in the notification centre.
///
/// It keeps no list of what it has scheduled. A rebuild clears what is pending and plans all active
/// tasks again; a task that changed is planned by itself. Only the present logical day of a task
/// and the two that follow are planned, so a rebuild is needed on every new day.
///
/// Nothing is planned until the user has allowed notifications, nor while the stores are
/// maintained. Completions are called on the main queue in every case; what the store or the
/// centre refuses is logged. To be used on the main thread, but for `schedule`.
class NotificationManager {
 public:
  using ScheduleRequest = NotificationHelper::ScheduleRequest;
  using TaskIDs = std::set<NSManagedObjectID>;

  enum class FeatureFlag : std::uint8_t { unknown, enabled, notEnabled };

  static constexpr std::int64_t notificationManagerVersion = 29;
  static constexpr TimeInterval rebuildDelay = 0.8;

  /// The process's own, over the shared data manager.
  [[nodiscard]] static NotificationManager& shared();
  /// \param manager Outlives this.
  /// \param siri Null for no reminders of the voice assistant.
  NotificationManager(DataManager& manager, std::shared_ptr<SiriExtensionUtilities> siri);
  NotificationManager(const NotificationManager&) = delete;
  NotificationManager& operator=(const NotificationManager&) = delete;

  NotificationManagerMode notificationMode = NotificationManagerMode::current;
  /// Called after each rebuild has cleared the centre and before its completion: whoever has
  /// pending notifications that are of no plan, such as those of a running timer, adds them again.
  std::function<void()> didRebuild;

  /// Asks the user, once, and after that reads what they have chosen. \param force Also if the
  /// program has not been allowed to ask yet.
  void requestAuthorization(bool force, Block completion = nullptr);
  /// Reads what the user has chosen, without asking, and registers the categories.
  void readAuthorization(Block completion);
  [[nodiscard]] FeatureFlag featureAlertEnabled() const { return featureAlertEnabled_; }
  [[nodiscard]] FeatureFlag featureBadgeEnabled() const { return featureBadgeEnabled_; }
  [[nodiscard]] FeatureFlag featureSoundEnabled() const { return featureSoundEnabled_; }

  /// Rebuilds all after 0.8 seconds without a further call; at once if the application is not in
  /// front of its user.
  void rebuildNotificationsDelayed(Block completion = nullptr);
  /// \param force Clears delivered notifications, too.
  void rebuildNotifications(bool force, Block completion = nullptr);
  void scheduleNotificationsForTasksImmediate(TaskIDs tasks, Block completion = nullptr);
  void scheduleNotificationsForTasksDelayedTimerTriggered();
  void updateBadges(Block completion = nullptr);
  void clearAllNotifications(bool clearDelivered);
  /// The contents of the reminders that were asked for by voice; on the queue of the context.
  void determineCurrentSiriNotifications(
      NSManagedObjectContext& context,
      const std::function<void(std::vector<NotificationContent>)>& completion) const;
  /// Hands a request to the centre: what it removes first, then what it adds. From any thread.
  void schedule(ScheduleRequest request, Block completion = nullptr) const;

  // Hooks of the host application.
  /// Asks for authorization, except at the first activation.
  void applicationDidBecomeActive();
  /// Does at once what timers would do later.
  void applicationWillResignActive();
  /// To be called once the calendar day, or the logical day of tasks, has changed.
  void calendarDayDidChange();

 private:
  [[nodiscard]] bool mayPlan() const;
  [[nodiscard]] static bool isExtensionOrMayPrompt();
  void setFeatures(const UNNotificationSettings& settings);
  void invalidateTimers();
  /// Calls back on the main queue, after `work` has run in a background context.
  void inBackground(std::function<void(NSManagedObjectContext&)> work, Block completion) const;
  /// \param tasks Absent for all active ones.
  void scheduleTasks(std::optional<TaskIDs> tasks, Block completion);

  DataManager& dataManager_;
  const std::shared_ptr<SiriExtensionUtilities> siri_;
  // Written on the main queue, read also by background work.
  std::atomic<FeatureFlag> featureBadgeEnabled_ = FeatureFlag::unknown;
  std::atomic<FeatureFlag> featureAlertEnabled_ = FeatureFlag::unknown;
  std::atomic<FeatureFlag> featureSoundEnabled_ = FeatureFlag::unknown;
  NSTimer rebuildTimer_;
  NSTimer badgeUpdateTimer_;
  NSTimer notificationsUpdateTimer_;
  std::vector<Block> rebuildCompletions_;  ///< Of calls that wait for `rebuildTimer_`.
  std::optional<TaskIDs> notificationsUpdateTasks_;
  bool hasPreviouslyBecomeActive_ = false;
  const DispatchQueue queue_{"velloro.domain.notificationmanager",
                             QualityOfService::userInteractive};
};

}  // namespace velloro
