#include "Support/TaskStore.h"
#include "Tasks/Reminders/AutomaticReminders.h"
#include "Tasks/Reminders/SleepTimes.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "Tasks/Rows/TaskWriting.h"

namespace velloro {
namespace {

using Entry = TaskLogEntryEntity;
using Share = TaskShareEntity;
using enum TaskReminder::TriggerType;

TEST_F(TasksTest, AutomaticRemindersAreRebuiltAndThenStay) {
  const TimeZone zone = TimeZone::current();
  const auto addEntry = [&](std::int64_t daysAgo, HHMMSS time) {
    const YYYYMMDD day = YYYYMMDD{2024, 3, 7}.add(-daysAgo, zone);
    const auto entry = make<Entry>();
    entry->setValue(Entry::task, task_);
    entry->setValue(Entry::entryDate, day);
    entry->setValue(Entry::entryType, TaskLogEntryType::completedManuallyFull);
    entry->setValue(Entry::createdTimestamp, day.dateAt(HHMMSS::midnight, time, zone));
    entry->setStored(Entry::createdTimeZone, "Europe/London");
  };
  const auto rebuilt = [&] {
    save();
    std::string text = rebuildAutomaticReminders(context_).value() ? "" : "as they were";
    EXPECT_FALSE(rebuildAutomaticReminders(context_).value());
    if (!text.empty()) return text;
    for (const TaskReminder& each : task_->notificationSettings().reminders) {
      text += std::string(rawValue(each.trigger.type)) + " ";
      if (each.trigger.timeOfDay) text += each.trigger.timeOfDay->debugDescription() + " ";
      text += each.snoozeDate ? "snoozed " : "";
    }
    return text;
  };
  addEntry(7, {.h = 9});
  addEntry(8, {.h = 20});
  EXPECT_EQ(rebuilt(), "tod 07:30:00 ");

  // A snooze stays, and moves along with its reminder; a reminder by place or timer stays, too.
  auto settings = task_->notificationSettings();
  const auto id = settings.reminders[0].uniqueId;
  settings = settings.snoozeNow(id, {{}, zone, zone, NotificationTimeZone::taskOwner, Date::now()});
  for (const auto type : {durationAfterStart, timeOfDay}) {
    settings.reminders.push_back({id, {}, {type, HHMMSS::midday, {}, 60}, everyDay()});
  }
  setNotificationSettings(*task_, settings);
  EXPECT_EQ(rebuilt(), "tod 07:30:00 snoozed das ");
  addEntry(0, {.h = 10});
  EXPECT_EQ(rebuilt(), "das tod 08:00:00 snoozed ");
  settings = task_->notificationSettings();
  EXPECT_EQ(settings.reminders[1].uniqueId, id);
  settings.reminderType = ReminderType::custom;
  setNotificationSettings(*task_, settings);
  EXPECT_EQ(rebuilt(), "das tod 08:00:00 snoozed todm 08:00:00 ");
  settings.reminderType = ReminderType::none;
  setNotificationSettings(*task_, settings);
  setAutomaticTaskType(*task_, AutomaticTaskType(HealthType::sleep));
  SleepTimes::shared().set({std::nullopt, HHMMSS{.m = 15}, HHMMSS{.h = 7}});
  EXPECT_EQ(rebuilt(), "das todm 23:15:00 ");
  SleepTimes::shared().set({});

  const auto share = make<Share>();
  share->setValue(Share::task, task_);
  share->setValue(Share::status, Share::ShareStatus::externalTask);
  share->setValue(Share::summaryJson, {{}});
  EXPECT_EQ(rebuilt(), "das ");
  const auto slot = Share::summaryJson.slot();
  std::string json = std::get<Data>(share->slotValue(slot)).text();
  json.insert(json.size() - 2, R"(,"notificationSettings":{"automaticTimes":[{"days":[1,9],)"
                               R"("times":[36000,86400,25200,{"h":25,"m":0,"s":0}]},)"
                               R"({"dayIndexesFromStart":[],"times":[25200]}]})");
  share->setSlotValue(slot, Data(json));
  EXPECT_EQ(rebuilt(), "das todm 07:00:00 todm 10:00:00 todm 07:00:00 ");
}

}  // namespace
}  // namespace velloro
