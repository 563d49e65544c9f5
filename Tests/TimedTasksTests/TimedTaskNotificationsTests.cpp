#include "Foundation/Text/String.h"
#include "Support/TaskStore.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"
#include "Tasks/Rows/TaskWriting.h"
#include "TimedTasks/TimedTaskNotifications.h"
#include "UserNotifications/UNUserNotificationCenter.h"
#include "VelloroCore/Reminders/TaskNotificationSettings.h"

namespace velloro {
namespace {

using Trigger = TaskReminder::Trigger;
using enum TaskReminder::TriggerType;

/// A timer of ten minutes in two steps, as its user wants to hear of it.
class TimedTaskNotificationsTest : public TasksTest {
 protected:
  TimedTaskNotificationsTest() {
    environment_.setResources(VELLORO_RESOURCES);
    task_->setValue(TaskAttributes::uniqueId, UniqueID::create());
    task_->setValue(TaskAttributes::title, "Read");
    TaskFrequency frequency = TaskFrequency::defaultFrequency;
    frequency.numPartialCompletions = 2;
    setFrequency(*task_, frequency);
    setAutomaticTaskType(*task_, AutomaticTaskType::timer(300, 2, TypeUnit::durationMinutes));
    settings_.partiallyCompletedNotificationIsTimeSensitive = true;
    settings_.partiallyCompletedOrMissedSound = SoundEffect::glow;
    settings_.timerNotificationSound = SoundEffect::ping;
    settings_.timerNotificationsAreTimeSensitive = true;
    for (const auto& [type, duration] : {std::pair(durationBeforeFinish, 60.0),
                                         {durationAfterStart, 60.0},
                                         {durationAfterStart, 20.0},
                                         {durationBeforeFinish, 300.0}}) {
      settings_.reminders.push_back({.uniqueId = UniqueID::create(),
                                     .trigger = Trigger::fromDuration(type, duration),
                                     .daysOfWeek = {DayOfWeek::monday}});
    }
  }

  /// One line each: the identifier without the task's, the second of the run, and what it tells.
  std::string of(TimeInterval since) {
    (void)setNotificationSettings(*task_, settings_);
    const Date now = Date::now();
    const TimedTaskManagerEntry run{.entryId = UniqueID::create(),
                                    .taskIdentifier = task_->uniqueId(),
                                    .period = task_->currentPeriod(now),
                                    .start = now - since,
                                    .end = now - since + 300};
    std::string text;
    for (const auto& content : timedTaskNotifications(*task_, run, now)) {
      std::string id = content.notificationId.str;
      id.erase(id.find(task_->uniqueId().stringValue()), 36);
      const double second = content.trigger->date.timeIntervalSince(run.start);
      const bool isEnd = content.category == NotificationCategory::taskCompleted;
      text += stringWithFormat("%s %.0f %s%s%s\n", id.c_str(), second,
                               (isEnd ? content.body : content.title)->c_str(),
                               content.timeSensitive ? "!" : "", content.sound ? "" : " (silent)");
    }
    return text;
  }

  TaskNotificationSettings settings_ = TaskNotificationSettings::default_(
      DefaultSettingsTaskType::untimed(), NotificationTimeZone::taskViewer);
};

TEST_F(TimedTaskNotificationsTest, TellOfTheWayAndTheEnd) {
  EXPECT_EQ(of(0),
            "c20240307. 300 Time’s up, well done!!\n"
            "tp.0 20 20 seconds completed!\n"
            "tp.1 60 1 minute completed!\n"
            "tp.2 240 1 minute remaining!\n");
  EXPECT_EQ(of(60),
            "c20240307. 300 Time’s up, well done!!\n"
            "tp.0 240 1 minute remaining!\n");
  settings_.partiallyCompletedNotification = false;
  settings_.timerNotificationSound.reset();
  EXPECT_EQ(of(100), "tp.0 240 1 minute remaining! (silent)\n");
  settings_.reminders.clear();
  EXPECT_EQ(of(100), "");
}

TEST_F(TimedTaskNotificationsTest, GoWithTheRun) {
  (void)setNotificationSettings(*task_, settings_);
  const Date now = Date::now();
  const TimedTaskManagerEntry run{.entryId = UniqueID::create(),
                                  .taskIdentifier = task_->uniqueId(),
                                  .period = task_->currentPeriod(now),
                                  .start = now,
                                  .end = now + 300};
  auto center = UNUserNotificationCenter::currentNotificationCenter();
  center.requestAuthorizationWithOptions(UNAuthorizationOptions::alert, [](const auto&) {});
  for (const auto& content : timedTaskNotifications(*task_, run, now)) {
    center.addNotificationRequest(content.request());
  }
  std::size_t pending = 99;
  const auto count = [&] {
    center.getPendingNotificationRequestsWithCompletionHandler(
        [&](const auto& requests) { pending = requests.size(); });
    environment_.settle();
    return pending;
  };
  EXPECT_EQ(count(), 4U);
  bool isDone = false;
  cancelTimedTaskNotifications(*task_, run.period, [&] { isDone = true; });
  EXPECT_EQ(count(), 0U);
  EXPECT_TRUE(isDone);
}

}  // namespace
}  // namespace velloro
