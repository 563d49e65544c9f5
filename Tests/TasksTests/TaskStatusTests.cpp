#include "Containers/SaveIfChanged.h"
#include "Settings/SavedActivityRings.h"
#include "Support/TaskStore.h"
#include "Tasks/Log/StoredTemporalData.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"
#include "Tasks/Rows/TaskWriting.h"
#include "Tasks/Status/StoredTaskRecords.h"

namespace velloro {
namespace {

using Columns = TaskAttributes;
using Row = TaskTemporalDataEntity;
using enum TaskLogEntryType;

constexpr YYYYMMDD today{2024, 3, 7}, yesterday{2024, 3, 6};  // the environment's, a Thursday

class TaskStatusTest : public TasksTest {
 protected:
  TaskStatusTest() {
    task_->setValue(Columns::title, "Read");
    task_->setValue(Columns::uniqueId, UniqueID::create());
    task_->setValue(Columns::daysTimesPerDay, 3);
    task_->setValue(Columns::created, Date::now() - 20 * 86400.0);
    task_->setValue(Columns::statusDate, Date::now());
  }

  std::shared_ptr<TaskLogEntryEntity> add(YYYYMMDD date, TaskLogEntryType type, double total = 0) {
    const auto entry = make<TaskLogEntryEntity>();
    entry->setValue(TaskLogEntryEntity::entryDate, date);
    entry->setValue(TaskLogEntryEntity::entryType, type);
    entry->setValue(TaskLogEntryEntity::uniqueId, UniqueID::create());
    entry->setValue(TaskLogEntryEntity::createdTimestamp, Date::now() + ++seconds_);
    entry->setValue(TaskLogEntryEntity::progressTotal, total);
    entry->setValue(TaskLogEntryEntity::task, task_);
    return entry;
  }
  void update() { task_->updateTemporalData(today, TimeZone::current()); }
  TaskFrequencyPeriod current() { return task_->currentPeriod().period; }
  /// "c 3/3 2/4": the status, the progress, the run and the best one.
  std::string shown() {
    update();
    const auto [status, streak] = task_->streakedCompletionStatus(Date::now());
    const TaskProgress& progress = status.progress();
    return status.status.stringValue() + " " +
           std::to_string(progress.numCompletions(Date::now())) + "/" +
           std::to_string(progress.expectedCompletions()) + " " + std::to_string(streak.current) +
           "/" + std::to_string(streak.best);
  }

  double seconds_ = 0;
};

TEST_F(TaskStatusTest, FollowsTheLog) {
  EXPECT_EQ(shown(), "i_mwoi 0/3 0/0");
  add({2024, 3, 4}, completedManuallyFull);
  add({2024, 3, 5}, skippedManuallyFull);
  add(yesterday, completedManuallyFull);
  add(today, completedManuallyPartial);
  EXPECT_EQ(shown(), "i_mwoi 1/3 2/2");
  const auto second = add(today, completedManuallyPartial);
  EXPECT_EQ(shown(), "i_mwoi 2/3 2/2");
  const auto next = task_->notificationTaskWhenCompleted(current(), true).value();
  EXPECT_EQ(next.completionStatus.status, CompletionStatus::Status::positiveComplete);
  EXPECT_EQ(next.streak, StreakRecord(3, 3));
  EXPECT_EQ(task_->notificationTaskCurrentProgress(current())->displayTitle.localizedPrimary,
            "Read");

  EXPECT_EQ(task_->currentUndoableEntry(current()), second->value(TaskLogEntryEntity::uniqueId));
  context_.deleteObject(*second);
  EXPECT_EQ(shown(), "i_mwoi 1/3 2/2");
  add(today, completedAutomaticallyFull);
  EXPECT_EQ(shown(), "c 3/3 3/3");
  EXPECT_NE(task_->currentUndoableEntry(current()), std::nullopt);  // the first step
  const auto tomorrow = task_->streakedCompletionStatus(current().next({}));
  EXPECT_EQ(tomorrow.streak, StreakRecord(3, 3));

  task_->setValue(Columns::isNegative, true);
  EXPECT_EQ(shown(), "nc_mwoi 0/3 3/3");
  add(today, allowableMissManuallyFull);
  EXPECT_EQ(shown(), "a 3/3 2/2");
  add(today, missedManuallyFull);
  EXPECT_EQ(shown(), "nm 3/3 0/2");
}

TEST_F(TaskStatusTest, WritesOnlyWhatChanged) {
  add(today, completedManuallyFull);
  add(yesterday, missedManuallyFull);
  task_->setStored(Columns::uniqueId, "broken");
  EXPECT_FALSE(task_->notificationTaskCurrentProgress(current()));
  task_->setValue(Columns::lastChangedDifficultyStatus, "x");
  update();
  EXPECT_TRUE(saveIfChanged(context_));
  EXPECT_TRUE(task_->taskUniqueId());
  const auto row = task_->value(Columns::taskTemporalData);
  EXPECT_EQ(row->value(Row::lastChangedDifficultyStatus), "x");
  EXPECT_EQ(row->stored(Row::lastCompleted), 20240307);
  EXPECT_EQ(row->stored(Row::lastMissed), 20240306);
  EXPECT_EQ(row->stored(Row::lastSkipped), 0);
  EXPECT_EQ(row->value(Row::recentShortTermNumSamples), 2);
  EXPECT_EQ(row->value(Row::recentLongTermPct), 0.5);
  EXPECT_EQ(row->stored(Row::progressDate), 20240307);
  const Date first = row->value(Row::lastUpdated).value();

  environment_.advance(60);
  update();
  EXPECT_FALSE(context_.hasChanges());
  environment_.setNow(first - 600);
  add({2024, 3, 5}, completedManuallyFull);
  update();
  EXPECT_EQ(row->value(Row::lastUpdated), first);
  environment_.setNow(first + 600);
  add({2024, 3, 4}, completedManuallyFull);
  EXPECT_TRUE(saveIfChanged(context_));
  update();
  EXPECT_EQ(row->value(Row::lastUpdated), first + 600);
}

TEST_F(TaskStatusTest, AsksTheLogWhatAnOpenPeriodTurnsInto) {
  const auto willSkip = [&](TaskFrequency frequency) {
    setFrequency(*task_, frequency);
    return std::string(rawValue(task_->willSkip(current())));
  };
  const TaskFrequency twice{.dayMode = DayMode::numberOfDaysInWeek, .numCompletions = 2};
  EXPECT_EQ(willSkip(twice), "swoi");
  add({2024, 3, 4}, completedManuallyFull);
  add({2024, 3, 4}, completedAutomaticallyFull);
  EXPECT_EQ(willSkip(twice), "swoi");
  add({2024, 3, 5}, completedManuallyFull);
  EXPECT_EQ(willSkip(twice), "swi");
  EXPECT_EQ(complicationTaskSnapshot(TaskSnapshot::of(*task_, Date::now()), Date::now())
                .numUniqueCompletions->count,
            2);
  // Completed on the 5th: due again on the 8th, or, every second day, today.
  EXPECT_EQ(willSkip({.dayMode = DayMode::dayInterval, .dayInterval = 3}), "swi");
  EXPECT_EQ(willSkip({.dayMode = DayMode::dayInterval, .dayInterval = 2}), "mwoi");
  const auto snapshot =
      complicationTaskSnapshot(TaskSnapshot::of(*task_, Date::now()), Date::now());
  EXPECT_EQ(snapshot.periodOfLastCompletionBeforeToday->startDate, (YYYYMMDD{2024, 3, 5}));

  const auto share = make<TaskShareEntity>();
  share->setValue(TaskShareEntity::task, task_);
  share->setStored(TaskShareEntity::status, "E");
  EXPECT_EQ(willSkip({.dayMode = DayMode::dayInterval, .dayInterval = 3}), "mwoi");
  EXPECT_FALSE(task_->lastCompletedDate(today));
  setTaskStatus(*task_, TaskStatus::paused, Date::now());
  EXPECT_EQ(willSkip(twice), "swi");
}

TEST_F(TaskStatusTest, TakesATimersAmountFromTheLog) {
  setAutomaticTaskType(*task_, AutomaticTaskType::timer(200, 3, TypeUnit::durationMinutes));
  add(today, timerManual, 4.5);
  EXPECT_EQ(shown(), "i_mwoi 1/3 0/0");
  EXPECT_EQ(task_->value(Columns::taskTemporalData)->value(Row::progress), 4.5);
  EXPECT_EQ(task_->progress(current()).as<TaskProgressTimer>()->currentCompletionDuration, 70);
}

TEST_F(TaskStatusTest, LetsEntriesStandInForHealthData) {
  const TaskTarget cups{.quantity = 8, .unit = TypeUnit::cupsUS};
  setAutomaticTaskType(*task_, AutomaticTaskType(HealthType::dietaryDrinkWater, cups));
  const auto keptAfter = [&](double amount) {
    const auto entry = add(today, completedManuallyPartial);
    entry->setValue(TaskLogEntryEntity::progress, amount);
    update();
    return temporalData(*task_).progress;
  };
  EXPECT_EQ(keptAfter(1), 1);
  add(today, completedManuallyPartial)->setValue(TaskLogEntryEntity::progress, 0.5);
  EXPECT_EQ(keptAfter(2), 3.5) << "as when two come from another device";
  task_->value(Columns::taskTemporalData)->setValue(Row::progress, 5);
  EXPECT_EQ(keptAfter(4), 5) << "what was read stays";
}

TEST_F(TaskStatusTest, KeepsTheRingsForTheExtensions) {
  setAutomaticTaskType(*task_, AutomaticTaskType(HealthType::activity));
  const auto row = make<Row>();
  row->setValue(Row::task, task_);
  row->setValue(Row::progress, 150100029);
  row->setStored(Row::progressDate, 20240307);
  EXPECT_EQ(task_->currentCompletionStatus().progress().progressPct({}), 0.7633);
  EXPECT_EQ(SavedActivityRings::shared()->saved(today)->energy, 0.29);

  // A missed day of a negative task shows a full ring; what is kept stays as it was measured.
  task_->setValue(Columns::isNegative, true);
  row->setStored(Row::lastMissed, 20240307);
  EXPECT_EQ(task_->currentCompletionStatus().progress().progressPct({}), 1);
  EXPECT_EQ(SavedActivityRings::shared()->saved(today)->energy, 0.29);
}

}  // namespace
}  // namespace velloro
