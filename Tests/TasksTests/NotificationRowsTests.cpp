#include "Support/Fixtures.h"
#include "Support/TaskStore.h"
#include "Tasks/Rows/TaskNotificationRemindersEntity.h"
#include "Tasks/Rows/TaskNotificationSettingsEntity.h"
#include "Tasks/Rows/TaskWriting.h"

#include <gmock/gmock.h>

namespace velloro {
namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;
using Row = TaskNotificationRemindersEntity;
using Trigger = TaskReminder::Trigger;
using Type = TaskReminder::TriggerType;

TaskReminder reminderAt(std::int64_t hour) {
  return {.uniqueId = UniqueID::create(),
          .trigger = Trigger::fromTimeOfDay({.h = hour}),
          .daysOfWeek = {DayOfWeek::monday}};
}

/// Of a reminder of a timer, one at a place, and one at a time.
TaskNotificationSettings everything() {
  const JSONDecoder decoder;
  auto settings = decoder.decode<TaskNotificationSettings>(fixtureText("TaskNotificationSettings"));
  settings.reminders.push_back(decoder.decode<TaskReminder>(fixtureText("TaskReminder")));
  settings.reminders[1].timeSensitive.reset();  // rows don't have it
  settings.reminders.push_back(reminderAt(8));
  return settings;
}

TEST_F(TasksTest, NotificationSettingsAreReadAsTheyWereWritten) {
  const auto byDefault = TaskNotificationSettings::default_(DefaultSettingsTaskType::untimed(),
                                                            NotificationTimeZone::taskViewer);
  EXPECT_EQ(task_->notificationSettings(), byDefault);
  const auto settings = everything();
  EXPECT_TRUE(setNotificationSettings(*task_, settings));
  EXPECT_EQ(task_->notificationSettings(), settings);
  save();
  const auto row = task_->value(TaskAttributes::taskNotificationSettings);
  environment_.advance(60);
  EXPECT_FALSE(setNotificationSettings(*task_, settings));
  EXPECT_FALSE(context_.hasChanges());
  EXPECT_TRUE(setNotificationSettings(*task_, byDefault));
  EXPECT_EQ(task_->value(TaskAttributes::taskNotificationSettings), row);
  EXPECT_EQ(row->value(TaskNotificationSettingsEntity::lastUpdated), Date::now());
  EXPECT_EQ(task_->notificationSettings(), byDefault);
  row->setStored(TaskNotificationSettingsEntity::badgeMode, "of a newer program");
  EXPECT_EQ(task_->notificationSettings().badgeMode, BadgeMode::doNotInclude);
}

TEST_F(TasksTest, RemindersKeepTheirRowsByValue) {
  auto settings = everything();
  setNotificationSettings(*task_, settings);
  const auto rows = task_->value(TaskAttributes::taskNotificationReminders);
  ASSERT_THAT(rows, SizeIs(3));
  const auto broken = make<Row>();
  broken->setValue(Row::task, task_);
  save();
  const TaskReminder incomplete{.uniqueId = UniqueID::create(),
                                .trigger = {.type = Type::location, .timeOfDay = HHMMSS::midday}};
  const TaskReminder added = reminderAt(23);
  TaskReminder kept = settings.reminders[0];
  kept.uniqueId = UniqueID::create();
  kept.timeSensitive = true;
  settings.reminders = {added, kept, added, incomplete};
  EXPECT_TRUE(setNotificationSettings(*task_, settings));
  save();
  EXPECT_THAT(task_->notificationSettings().reminders, ElementsAre(*rows[0]->reminder(), added));
  EXPECT_EQ(rows[1]->managedObjectContext(), nullptr);
  EXPECT_EQ(broken->managedObjectContext(), nullptr);
}

TEST_F(TasksTest, ARowWithoutWhatItsTriggerNeedsIsNoReminder) {
  const auto row = make<Row>();
  const auto isReminder = [&] { return row->reminder().has_value(); };
  EXPECT_FALSE(isReminder());
  row->setValue(Row::uniqueId, UniqueID::create());
  row->setStored(Row::timeOfDay, 3600);
  EXPECT_FALSE(isReminder());
  row->setStored(Row::daysOfWeek, std::int16_t{0});
  EXPECT_EQ(row->reminder()->trigger, Trigger::fromTimeOfDay({.h = 1}));
  row->setStored(Row::timeOfDay, 86400);
  EXPECT_FALSE(isReminder());
  const std::pair<const char*, bool> types[] = {{"tod", false}, {"todm", false}, {"loc", false},
                                                {"das", true},  {"dbf", true},   {"?", false}};
  row->setValue(Row::duration, 90.0);
  row->setStored(Row::region, Data(R"({"latitude":1})"));
  for (const auto& [type, has] : types) {
    row->setStored(Row::reminderType, type);
    EXPECT_EQ(isReminder(), has) << type;
  }
  row->setStored(Row::daysFromStart, ",2,,x,-1,");
  row->setStored(Row::reminderType, "das");
  EXPECT_EQ(row->reminder()->dayIndexesFromStart, (TaskReminder::DayIndexes{-1, 2}));
}

}  // namespace
}  // namespace velloro
