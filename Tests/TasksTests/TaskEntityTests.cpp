#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "Settings/SettingsStorage.h"
#include "Support/TaskStore.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "Tasks/Rows/TaskShareOwnerEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"
#include "Tasks/Rows/TaskWriting.h"
#include "VelloroCore/Types/TaskExtra.h"

#include <tuple>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using Columns = TaskAttributes;
using enum DayMode;

TEST_F(TasksTest, TextsThatNobodyKnowsReadAsNothing) {
  const auto& attributes = task_->entity().attributes();
  for (const char* odd : {"", " ", "?", "{\"vr\":", "[1]", "\xff", "0.2 0.4 0.6", "1E4"}) {
    for (std::size_t slot = 0; slot < attributes.size(); ++slot) {
      const bool isText = attributes[slot].type == NSAttributeType::string;
      if (isText) task_->setSlotValue(slot, std::string(odd));
    }
    EXPECT_FALSE(task_->taskUniqueId()) << odd;
    EXPECT_EQ(task_->taskStatus(), TaskStatus::normal) << odd;
    EXPECT_FALSE(task_->displayRepresentation()) << odd;
    EXPECT_FALSE(task_->taskColor()) << odd;
    EXPECT_FALSE(task_->automaticTaskType()) << odd;
    EXPECT_EQ(task_->taskCurrentTimeZone(), TimeZone::current()) << odd;
    EXPECT_EQ(task_->taskExtra(), TaskExtra()) << odd;
  }
}

TEST_F(TasksTest, TheStartOfDayIsTheTasksOwnOrThatOfAllTasks) {
  SettingsStorage::shared().setInteger(4 * 3600, Setting::startOfDay);
  const HHMMSS global{.h = 4};
  const std::pair<int, HHMMSS> cases[] = {{0, global},           {-1, global}, {1, {.s = 1}},
                                          {86399, {23, 59, 59}}, {86400, {}},  {86401, {.s = 1}},
                                          {172800, {}}};
  for (const auto& [stored, read] : cases) {
    task_->setStored(Columns::startOfDayValue, stored);
    EXPECT_EQ(task_->startOfDay(), read) << stored;
  }
  SettingsStorage::shared().setInteger(0, Setting::startOfDay);
}

TEST_F(TasksTest, TheFirstDayOfWeekCountsWhereWeeksDo) {
  const auto share = make<TaskShareEntity>();
  share->setStored(TaskShareEntity::status, "X");
  const DayOfWeek global = DayOfWeek::sunday;  // the locale's
  const std::tuple<DayMode, int, bool, DayOfWeek> cases[] = {
      {aggregateOverWeek, 2, false, DayOfWeek::monday},
      {aggregateOverFortnight, 7, false, DayOfWeek::saturday},
      {aggregateOverMonth, 2, false, global},
      {numberOfDaysInWeek, 2, false, global},
      {numberOfDaysInWeek, 2, true, DayOfWeek::monday},
      {aggregateOverWeek, 0, false, global},
      {aggregateOverWeek, 8, true, global}};
  for (const auto& [mode, stored, isAnothers, read] : cases) {
    setFrequency(*task_, {.dayMode = mode});
    task_->setStored(Columns::firstDayOfWeekValue, static_cast<std::int16_t>(stored));
    task_->setValue(Columns::taskShare, isAnothers ? share : nullptr);
    EXPECT_EQ(task_->firstDayOfWeek(), read) << rawValue(mode) << " " << stored << isAnothers;
  }
}

TEST_F(TasksTest, FrequenciesAreBroughtIntoTheRangeOfWhatCanBeChosen) {
  const struct {
    std::int16_t mode, perWeek, perDay;
    const char* typeName;
    DayMode readMode;
    std::int64_t completions, interval, partial;
  } cases[] = {
      {0, 9, 3, nullptr, specificDaysOfWeek, 1, 9, 3},
      {1, 9, 0, nullptr, numberOfDaysInWeek, 7, 9, 1},
      {1, 0, 99, nullptr, numberOfDaysInWeek, 1, 2, 18},
      {2, 99, -5, nullptr, dayInterval, 1, 30, 1},
      {3, 99, 1, nullptr, numberOfDaysInMonth, 31, 30, 1},
      {4, 999, 1, nullptr, numberOfDaysInYear, 366, 30, 1},
      {5, 99, 1, nullptr, numberOfDaysInFortnight, 14, 30, 1},
      {6, 5, 99, nullptr, aggregateOverWeek, 1, 5, 36},
      {-1, 5, 1, nullptr, specificDaysOfWeek, 1, 5, 1},
      {10, 5, 1, nullptr, specificDaysOfWeek, 1, 5, 1},          // no days of months are stored
      {4, 99, 1, "hk_activity", specificDaysOfWeek, 99, 30, 1},  // activity has no years
      {6, 5, 99, "hk_stand", aggregateOverWeek, 1, 5, 1},        // nor parts of hours
  };
  task_->setStored(Columns::daysOfWeek, DaysOfWeek::monday.rawValue);
  for (const auto& c : cases) {
    task_->setStored(Columns::daysMode, c.mode);
    task_->setValue(Columns::daysPerWeek, c.perWeek);
    task_->setValue(Columns::daysTimesPerDay, c.perDay);
    task_->setValue(Columns::typeName,
                    c.typeName ? std::optional<std::string>(c.typeName) : std::nullopt);
    const bool isReplaced = c.mode >= 0 && c.mode != rawValue(c.readMode);
    EXPECT_EQ(task_->frequency(),
              (TaskFrequency{.dayMode = c.readMode,
                             .days = isReplaced ? everyDay() : EnumSet(DayOfWeek::monday),
                             .numPartialCompletions = c.partial,
                             .numCompletions = c.completions,
                             .dayInterval = c.interval}))
        << c.mode << ": " << task_->frequency().debugDescription();
  }
}

TEST_F(TasksTest, WhatIsSetIsReadAndWrittenOnlyWhereItDiffers) {
  const IconDisplayRepresentation bicycle{
      .visualRepresentation = IconVisualRepresentation::emoji("🚲"), .displayProperties = {}};
  const TaskExtra counter{.uncheckedActionButton = {.type = TaskExtra::ActionButtonType::counter,
                                                    .incrementAmount = 250}};
  const TaskFrequency thrice{.dayMode = numberOfDaysInWeek, .numCompletions = 3, .dayInterval = 3};
  const OxCodableColor blue{.r = 0.2, .g = 0.4, .b = 0.6};
  const HHMMSS midnight;
  for (const bool isFirst : {true, false}) {
    EXPECT_EQ(setTaskStatus(*task_, TaskStatus::paused, Date::now()), isFirst);
    EXPECT_EQ(setTaskDisplayOrder(*task_, {TaskPageNumber{1}, 2}), isFirst);
    EXPECT_EQ(task_->setDisplayRepresentation(bicycle), isFirst);
    EXPECT_EQ(task_->replaceValue(Columns::colorInfo, blue), isFirst);
    EXPECT_EQ(task_->replaceValue(Columns::startOfDayValue, midnight), isFirst);
    EXPECT_EQ(task_->replaceValue(Columns::firstDayOfWeekValue, CalendarDayOfWeek::saturday),
              isFirst);
    EXPECT_EQ(setFrequency(*task_, thrice), isFirst);
    EXPECT_EQ(task_->replaceValue(Columns::customReminderType, counter), isFirst);
  }
  EXPECT_EQ(task_->value(Columns::statusDate), Date::now());
  EXPECT_EQ(task_->value(Columns::displayOrder), 103);
  EXPECT_EQ(task_->taskDisplayOrder(), (TaskDisplayOrder{TaskPageNumber{1}, 2}));
  EXPECT_EQ(task_->displayRepresentation(), bicycle);
  EXPECT_EQ(task_->stored(Columns::startOfDayValue), 86400);
  EXPECT_EQ(task_->stored(Columns::colorInfo), "0.2 0.4 0.6 1");
  EXPECT_EQ(task_->taskColor(), blue);
  EXPECT_EQ(task_->frequency(), thrice);
  EXPECT_EQ(task_->stored(Columns::customReminderType),
            R"({"uncheckedActionButton":{"type":4,"incrementAmount":250}})");
  EXPECT_EQ(task_->taskExtra(), counter);
}

TEST_F(TasksTest, TheDefaultButtonSuitsTheType) {
  using enum TaskExtra::ActionButtonType;
  const std::pair<const char*, TaskExtra::ActionButtonType> cases[] = {
      {"hk_breathe", timer},          {"hk_record_weight", healthInput},
      {"hk_record_pef", healthInput}, {"hk_record_height", noAction},
      {"hk_water", noAction},         {"unknown", noAction}};
  for (const auto& [typeName, button] : cases) {
    task_->setValue(Columns::typeName, typeName);
    EXPECT_EQ(task_->taskExtra().uncheckedActionButton.type, button) << typeName;
  }
}

TEST_F(TasksTest, SharesTellOfOthers) {
  EXPECT_EQ(task_->taskShareStatus(), TaskShareStatus::notShared);
  EXPECT_EQ(task_->shareParticipantCount(), 0);
  const auto share = make<TaskShareEntity>();
  task_->setValue(Columns::taskShare, share);
  EXPECT_EQ(task_->taskShareStatus(), TaskShareStatus::isSharedWithOthers);
  for (const char* status : {"L", "E", "X", "?"}) {
    share->setStored(TaskShareEntity::status, status);
    const bool isAnothers = *status == 'E' || *status == 'X';
    EXPECT_EQ(task_->taskShareStatus() == TaskShareStatus::isSharedWithMe, isAnothers) << status;
  }
  share->setStored(TaskShareEntity::participantsJson, Data(R"([{"acceptanceStatus":"?"}])"));
  EXPECT_EQ(task_->shareParticipantCount(), 0);
  share->setStored(TaskShareEntity::participantsJson, Data(R"([
      {"displayTitle":"Ada","acceptanceStatus":"accepted",
       "userRecordID":{"recordName":"_a","zoneID":{"zoneName":"_z","ownerName":"_o"}}},
      {"acceptanceStatus":"pending"},{"acceptanceStatus":"accepted"}])"));
  EXPECT_EQ(task_->shareParticipantCount(), 2);
  EXPECT_EQ(share->value(TaskShareEntity::participantsJson)->at(0).userRecordID->zoneID.ownerName,
            "_o");
  const auto owner = make<TaskShareOwnerEntity>();
  owner->setValue(TaskShareOwnerEntity::ckUserDisplayName, "ada@example.com");
  owner->setValue(TaskShareOwnerEntity::cnFormattedName, "Ada");
  EXPECT_EQ(owner->displayName(), "Ada");
}

TEST_F(TasksTest, TheLaterOfTwoDatesIsTheLastUpdate) {
  const auto derived = make<TaskTemporalDataEntity>();
  derived->setValue(TaskTemporalDataEntity::task, task_);
  EXPECT_EQ(task_->lastUpdated(), Date::now());
  task_->setValue(Columns::statusDate, Date::now() - 10);
  const auto other = make<TaskEntity>();
  other->setValue(Columns::statusDate, Date::now() - 10);
  EXPECT_FALSE(task_->isNewer(*other));
  derived->setValue(TaskTemporalDataEntity::lastUpdated, Date::now() - 9);
  EXPECT_EQ(task_->lastUpdated(), Date::now() - 9);
  EXPECT_TRUE(task_->isNewer(*other));
}

TEST_F(TasksTest, AnEntryHasAPeriodAndAZone) {
  const auto entry = make<TaskLogEntryEntity>();
  entry->setStored(TaskLogEntryEntity::entryDate, 20240307);
  entry->setStored(TaskLogEntryEntity::entryPeriodFrom, 20240303);
  entry->setStored(TaskLogEntryEntity::entryPeriodTo, 20240309);
  entry->setStored(TaskLogEntryEntity::entryPeriodType, "w");
  EXPECT_EQ(entry->period(), TaskLogEntryPeriod(TaskFrequencyPeriodType::week, {2024, 3, 3},
                                                {2024, 3, 9}, {2024, 3, 7}));
  const TimeZone given = TimeZone::fromIdentifier("Asia/Kathmandu").value();
  EXPECT_EQ(entry->timeZone(given), given);
  entry->setStored(TaskLogEntryEntity::createdTimeZone, "Pacific/Apia");
  EXPECT_EQ(entry->timeZone(given).identifier(), "Pacific/Apia");
}

}  // namespace
}  // namespace velloro
