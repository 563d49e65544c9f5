#include "Notifications/IndividualReminder.h"
#include "Support/TaskStore.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"
#include "Tasks/Rows/TaskWriting.h"

namespace velloro {
namespace {

using Columns = TaskAttributes;
using Row = TaskTemporalDataEntity;

constexpr YYYYMMDD today{2024, 3, 7};  // the environment's, a Thursday

class IndividualReminderTest : public TasksTest {
 protected:
  IndividualReminderTest() {
    environment_.setResources(VELLORO_RESOURCES);
    task_->setValue(Columns::title, "Read");
    row_->setValue(Row::task, task_);
    row_->setValue(Row::progressDate, today);
  }

  void keep(std::int64_t streak, std::int64_t best, double progress = 0) {
    row_->setValue(Row::activeStreak, streak);
    row_->setValue(Row::bestStreak, best);
    row_->setValue(Row::progress, progress);
  }
  /// A line "kind: text" for each motivation, and for `reminder` with the task's name.
  std::string said(YYYYMMDD date = today, bool includeTaskName = false) {
    const auto task = TaskSnapshot::of(*task_, Date::now());
    const IndividualReminder reminder(task, task.datedPeriod(date), date);
    auto kinds = motivations(reminder.facts());
    if (includeTaskName) kinds.insert(NotificationIndividualReminder::reminder);
    std::string lines;
    for (const auto kind : kinds) {
      const auto message = reminder.message(kind, {.includeTaskName = includeTaskName});
      lines += std::string(rawValue(kind)) + ": " + message.text.value_or("-") + "\n";
    }
    return lines;
  }
  std::set<std::string> bodies() {
    std::set<std::string> texts;
    for (int i = 0; i < 50; ++i) {
      texts.insert(
          alertBodyForLocalIndividualNotification(*task_, task_->currentPeriod(), today).value());
    }
    return texts;
  }

  std::shared_ptr<Row> row_ = make<Row>();
};

TEST_F(IndividualReminderTest, CountsTheDaysOfAWeek) {
  setFrequency(*task_, {.dayMode = DayMode::numberOfDaysInWeek, .numCompletions = 3});
  keep(4, 9);
  const auto entry = make<TaskLogEntryEntity>();
  entry->setValue(TaskLogEntryEntity::entryDate, YYYYMMDD{2024, 3, 5});
  entry->setValue(TaskLogEntryEntity::entryType, TaskLogEntryType::completedManuallyFull);
  entry->setValue(TaskLogEntryEntity::task, task_);
  EXPECT_EQ(said(),
            "keepAliveWeekProgress: Keep your streak going (1 of 3 so far)\n"
            "weeklyTarget: Reach your weekly target (1 of 3 so far)\n");
  EXPECT_EQ(said(today, true),
            "reminder: A little reminder: Read (streak: 4, best: 9)\n"
            "keepAliveWeekProgress: Read: keep your streak going (1 of 3 so far)\n"
            "weeklyTarget: Read: 1 of 3 this week (streak: 4, best: 9)\n");
  EXPECT_EQ(said(today.nextDay({})),
            "missToBreakWeekProgress: Do it today to keep your streak (1 of 3 so far)\n");
}

TEST_F(IndividualReminderTest, TellsAmountsOfAPeriodUnderWay) {
  setAutomaticTaskType(
      *task_, AutomaticTaskType(HealthType::runOrWalk, TaskTarget{10, TypeUnit::distanceKm}));
  setFrequency(*task_, {.dayMode = DayMode::aggregateOverWeek});
  keep(9, 9, 3);
  EXPECT_EQ(said(),
            "extendBest: You have until Saturday to extend your best streak (streak: 9, best: 9)\n"
            "weeklyTarget: Reach your weekly target (3.0 of 10.0 this week)\n");
  EXPECT_EQ(said(today.nextDay({}), true),
            "reminder: A little reminder: Read 7.0 km (streak: 9, best: 9)\n"
            "extendBest: Read 7.0 km: you have until tomorrow to extend your best streak"
            " (streak: 9, best: 9)\n"
            "weeklyTarget: Read: 3.0 km of 10.0 km this week (streak: 9, best: 9)\n");
  // If the week under way stays as it is, the next one begins without a run.
  EXPECT_EQ(said({2024, 3, 10}, true),
            "reminder: A little reminder: Read 10.0 km\n"
            "extendBest: Read 10.0 km: you have until Saturday to extend your best streak\n"
            "weeklyTarget: -\n");
}

TEST_F(IndividualReminderTest, CountsTheDayThatANegativeTaskIsIn) {
  task_->setValue(Columns::isNegative, true);
  setFrequency(*task_, {.numPartialCompletions = 3});
  keep(4, 9, 2);
  EXPECT_EQ(said(),
            "negativeStreak: 5 days strong, keep going\n"
            "negativeKeepAlive: One more today would end your streak of 5 days\n");
  row_->setValue(Row::lastCompleted, today);
  keep(1, 9);
  EXPECT_EQ(said(),
            "negativeStartNew: Stay strong today and start a new streak (streak: 1, best: 9)\n");
  const auto share = make<TaskShareEntity>();
  share->setValue(TaskShareEntity::task, task_);
  share->setValue(TaskShareEntity::status, TaskShareEntity::ShareStatus::externalTask);
  EXPECT_EQ(said(), "reminderTaskSharedWithMe: A little reminder (streak: 1, best: 9)\n");
}

TEST_F(IndividualReminderTest, IsTheFirstMessageThatThereIs) {
  using Texts = std::set<std::string>;
  setFrequency(*task_, {.dayMode = DayMode::aggregateOverMonth, .numPartialCompletions = 5});
  keep(8, 9);
  const std::string best = "Match your best streak this month (streak: 8, best: 9)";
  EXPECT_EQ(said(), "nearlyBest: " + best + "\nmonthlyTarget: -\n");
  EXPECT_EQ(bodies(), Texts{best});
  setFrequency(*task_, {.numPartialCompletions = 3});
  EXPECT_EQ(bodies(), (Texts{"Do it today to keep your streak (streak: 8, best: 9)",
                             "Match your best streak today (streak: 8, best: 9)",
                             "Reach your target today (0 of 3 so far)"}));
}

}  // namespace
}  // namespace velloro
