#include "Containers/SaveIfChanged.h"
#include "DataManager/DataManager.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Notifications/Planning/NotificationManager.h"
#include "Settings/SettingsStorage.h"
#include "Settings/SiriExtensionUtilities.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskWriting.h"
#include "UserNotifications/UNUserNotificationCenter.h"

#include <map>
#include <string>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using FeatureFlag = NotificationManager::FeatureFlag;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using testing::Not;
using testing::SizeIs;

/// A task with a reminder at 18:00, at noon.
class NotificationManagerTest : public testing::Test {
 protected:
  NotificationManagerTest() {
    environment_.setResources(VELLORO_RESOURCES);
    environment_.setTimeZone(TimeZone::gmt());
    environment_.setNow(Date::fromISO8601("2024-03-07T12:00:00Z").value());
    data_ = DataManager::make();
    environment_.settle();
    manager_ = std::make_unique<NotificationManager>(*data_, SiriExtensionUtilities::shared());
    auto& context = *data_->viewContext();
    task_ = TaskEntity::create(context);
    task_->setValue(TaskAttributes::uniqueId, UniqueID::create());
    TaskNotificationSettings settings{.badgeMode = BadgeMode::includeWhenIncomplete,
                                      .reminderType = ReminderType::custom};
    settings.reminders.push_back({.uniqueId = UniqueID::create(),
                                  .trigger = TaskReminder::Trigger::fromTimeOfDay({.h = 18}),
                                  .daysOfWeek = everyDay()});
    setNotificationSettings(*task_, settings);
    saveIfChanged(context);
  }
  ~NotificationManagerTest() override { environment_.settle(); }

  using Pending = std::map<std::string, std::string>;
  /// Identifiers, without the task's, with the moments of their triggers.
  Pending pending() {
    environment_.settle();
    Pending pending;
    UNUserNotificationCenter::currentNotificationCenter()
        .getPendingNotificationRequestsWithCompletionHandler([&](const auto& requests) {
          for (const auto& request : requests) {
            const auto date = request.trigger ? request.trigger->nextTriggerDate() : std::nullopt;
            const std::string& id = request.identifier;
            const bool isReminder = id.starts_with("r");
            pending[isReminder ? id.substr(0, id.find('.')) + id.substr(id.rfind('.')) : id] =
                date ? date->iso8601() : "";
          }
        });
    environment_.settle();
    return pending;
  }
  void authorize() {
    manager_->requestAuthorization(true);
    environment_.settle();
  }

  VirtualEnvironment environment_;
  std::shared_ptr<DataManager> data_;
  std::unique_ptr<NotificationManager> manager_;
  std::shared_ptr<TaskEntity> task_;
};

TEST_F(NotificationManagerTest, PlansOnceItMay) {
  manager_->scheduleNotificationsForTasksImmediate({task_->objectID()});
  manager_->applicationDidBecomeActive();
  manager_->applicationDidBecomeActive();
  EXPECT_THAT(pending(), IsEmpty()) << "the program may not ask yet";
  authorize();
  const Pending all = {{"r7.0", "2024-03-07T18:00:00Z"},
                       {"r8.0", "2024-03-08T18:00:00Z"},
                       {"r9.0", "2024-03-09T18:00:00Z"},
                       {"b.0", ""}};
  EXPECT_EQ(pending(), all) << "being allowed starts a rebuild";
  EXPECT_EQ(manager_->featureSoundEnabled(), FeatureFlag::enabled);

  // A rebuild right after it changes nothing.
  int completed = 0;
  manager_->rebuildNotifications(false, [&] { ++completed; });
  EXPECT_EQ(pending(), all);
  EXPECT_EQ(completed, 1);

  // A paused task leaves nothing pending.
  setTaskStatus(*task_, TaskStatus::paused, Date::now());
  saveIfChanged(*data_->viewContext());
  manager_->scheduleNotificationsForTasksImmediate({task_->objectID()});
  EXPECT_THAT(pending(), Not(Contains(Key("r7.0"))));
  EXPECT_THAT(pending(), SizeIs(1));
}

TEST_F(NotificationManagerTest, PutsRebuildsTogetherWhileTheUserIsActive) {
  authorize();
  int completed = 0;
  const auto rebuildAfter = [&](double seconds) {
    environment_.advance(seconds);
    manager_->clearAllNotifications(false);
    manager_->rebuildNotificationsDelayed([&] { ++completed; });
  };
  rebuildAfter(0);
  rebuildAfter(0.5);
  environment_.advance(0.75);
  EXPECT_EQ(completed, 0);
  EXPECT_THAT(pending(), ElementsAre(Key("b.0"))) << "due since the first plan";
  environment_.advance(0.1);
  EXPECT_THAT(pending(), SizeIs(4));
  EXPECT_EQ(completed, 2);

  rebuildAfter(0);
  manager_->applicationWillResignActive();
  EXPECT_THAT(pending(), SizeIs(4)) << "at once";
  EXPECT_EQ(completed, 3);
}

TEST_F(NotificationManagerTest, DoesNothingWhileItMayNot) {
  authorize();
  const Pending before = pending();
  int completed = 0;
  const auto work = [&] {
    manager_->rebuildNotifications(true, [&] { ++completed; });
    manager_->scheduleNotificationsForTasksImmediate({task_->objectID()}, [&] { ++completed; });
    manager_->updateBadges([&] { ++completed; });
    EXPECT_EQ(pending(), before);
  };
  manager_->notificationMode = NotificationManagerMode::none;
  work();
  manager_->notificationMode = NotificationManagerMode::current;
  data_->setInMaintenanceMode(true);
  work();
  data_->setInMaintenanceMode(false);
  EXPECT_EQ(completed, 6) << "completions are called in every case";
}

}  // namespace
}  // namespace velloro
