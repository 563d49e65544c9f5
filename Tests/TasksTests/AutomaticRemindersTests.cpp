#include "Support/TaskStore.h"
#include "Tasks/Reminders/AutomaticReminders.h"
#include "Tasks/Reminders/SleepTimes.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "Tasks/Rows/TaskWriting.h"

namespace velloro {
namespace {

using Columns = TaskAttributes;
using Entry = TaskLogEntryEntity;
using Share = TaskShareEntity;

/// A task in Berlin, where it is noon on 7 March 2024.
class AutomaticRemindersTest : public TasksTest {
 protected:
  void addEntry(std::int64_t daysAgo, HHMMSS time) {
    const YYYYMMDD day = YYYYMMDD{2024, 3, 7}.add(-daysAgo, zone_);
    const auto entry = make<Entry>();
    entry->setValue(Entry::task, task_);
    entry->setValue(Entry::entryDate, day);
    entry->setValue(Entry::entryType, TaskLogEntryType::completedManuallyFull);
    entry->setValue(Entry::createdTimestamp, day.dateAt(HHMMSS::midnight, time, zone_));
  }
  void change(ReminderType type) {
    auto settings = task_->notificationSettings();
    settings.reminderType = type;
    setNotificationSettings(*task_, settings);
  }
  /// "07:20:00 on 7" for each reminder, muted or not: on so many weekdays.
  std::string reminders() {
    std::string text;
    for (const TaskReminder& each : task_->notificationSettings().reminders) {
      text += (text.empty() ? "" : ", ") + each.trigger.timeOfDay.value().debugDescription() +
              " on " + std::to_string(each.daysOfWeek.size());
      if (each.trigger.type == TaskReminder::TriggerType::timeOfDayMuted) text += " muted";
    }
    return text;
  }
  /// Those that a rebuild writes, which another one leaves as they are.
  std::string rebuilt() {
    save();
    const bool wrote = rebuildAutomaticReminders(context_).value();
    EXPECT_FALSE(context_.hasChanges());
    environment_.advance(60);
    EXPECT_FALSE(rebuildAutomaticReminders(context_).value());
    return wrote ? reminders() : "as they were";
  }

  const TimeZone zone_ = TimeZone::current();
};

TEST_F(AutomaticRemindersTest, AreRebuiltFromTheLogAndThenStay) {
  addEntry(7, {.h = 9});
  addEntry(8, {.h = 20});
  const auto archived = make<TaskEntity>();
  archived->setValue(Columns::status, TaskStatus::archived);
  EXPECT_EQ(rebuilt(), "08:30:00 on 7");
  EXPECT_TRUE(archived->notificationSettings().reminders.empty());

  const auto before = task_->notificationSettings();
  const auto snoozed =
      before.snoozeNow(before.reminders[0].uniqueId,
                       {{}, zone_, zone_, NotificationTimeZone::taskOwner, Date::now()});
  setNotificationSettings(*task_, snoozed);
  EXPECT_EQ(rebuilt(), "as they were");
  addEntry(0, {.h = 10});
  EXPECT_EQ(rebuilt(), "09:00:00 on 7");
  auto moved = snoozed.reminders[0];
  moved.trigger.timeOfDay = HHMMSS{.h = 9};
  EXPECT_EQ(task_->notificationSettings().reminders[0], moved);

  change(ReminderType::custom);
  EXPECT_EQ(rebuilt(), "09:00:00 on 7, 09:00:00 on 7 muted");
  change(ReminderType::none);
  EXPECT_EQ(rebuilt(), "09:00:00 on 7 muted");
  task_->setValue(Columns::displayOrder, 4);
  environment_.advance(8 * 86400);
  const auto unknown = AutomaticReminders::of(TaskSnapshot::of(*task_));
  EXPECT_TRUE(unknown.isMuted);
  EXPECT_EQ(unknown.times.at(0).time, (HHMMSS{.h = 18, .m = 40}));
  const AutomaticTaskType sleep(HealthType::sleep);
  setAutomaticTaskType(*task_, sleep);
  SleepTimes::shared().set({std::nullopt, HHMMSS{.m = 15}, HHMMSS{.h = 7}});
  EXPECT_EQ(rebuilt(), "23:15:00 on 7 muted");
  SleepTimes::shared().set({std::nullopt, std::nullopt, HHMMSS{.h = 7}});
  EXPECT_EQ(rebuilt(), "18:40:00 on 7 muted");
}

TEST_F(AutomaticRemindersTest, OfAnothersTaskAreTheOwners) {
  addEntry(1, {.h = 9});
  const auto share = make<Share>();
  share->setValue(Share::task, task_);
  share->setValue(Share::status, Share::ShareStatus::localTask);
  EXPECT_EQ(rebuilt(), "08:30:00 on 7");
  share->setValue(Share::status, Share::ShareStatus::externalTask);
  EXPECT_EQ(rebuilt(), "");
  share->setValue(Share::summaryJson, {{}});
  EXPECT_EQ(rebuilt(), "as they were");
  const auto slot = Share::summaryJson.slot();
  std::string json = std::get<Data>(share->slotValue(slot)).text();
  json.insert(json.size() - 2, R"(,"notificationSettings":{"automaticTimes":[)"
                               R"({"days":[1,9],"times":[36000,86400,25200,{"h":25,"m":0,"s":0}]},)"
                               R"({"dayIndexesFromStart":[],"times":[25200]}]})");
  share->setSlotValue(slot, Data(json));
  EXPECT_EQ(rebuilt(), "07:00:00 on 1, 10:00:00 on 1, 07:00:00 on 7");
}

}  // namespace
}  // namespace velloro
