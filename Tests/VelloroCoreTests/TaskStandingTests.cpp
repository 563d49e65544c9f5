#include "Foundation/Process/VirtualEnvironment.h"
#include "VelloroCore/Status/TaskStanding.h"

#include <gtest/gtest.h>

namespace velloro {
namespace {

constexpr YYYYMMDD today{2024, 3, 7}, yesterday{2024, 3, 6};  // the environment's

class TaskStandingTest : public testing::Test {
 protected:
  VirtualEnvironment environment;
  TaskStanding task{
      .frequency = {.numPartialCompletions = 3},
      .timeZone = TimeZone::current(),
      .temporal = {.streak = StreakRecord(4, 9), .progress = 1, .progressDate = today},
      .now = Date::now()};
  int questions = 0;

  TaskFrequencyPeriod day(YYYYMMDD date) {
    return task.frequency.period(date, DayOfWeek::sunday, {}).period;
  }
  /// "i_swi 1/3 4": the status, the progress, the current run.
  std::string shown(YYYYMMDD date = today) {
    const auto willSkip = [&](const TaskFrequencyPeriod&) {
      ++questions;
      return SkipMode::willSkipWithIndicator;
    };
    const auto [status, streak] = task.streakedCompletionStatus(day(date), willSkip);
    const TaskProgress& progress = status.progress();
    return status.status.stringValue() + " " + std::to_string(progress.numCompletions(task.now)) +
           "/" + std::to_string(progress.expectedCompletions()) + " " +
           std::to_string(streak.current);
  }
};

TEST_F(TaskStandingTest, ReadsWhatIsKeptOfAPositiveTask) {
  EXPECT_EQ(shown(), "i_swi 1/3 4");
  EXPECT_EQ(shown(yesterday), "i_swi 0/3 4");
  EXPECT_EQ(shown({2024, 3, 9}), "i_swi 0/3 4");
  task.temporal.lastSkipped = today;
  EXPECT_EQ(shown(), "s 1/3 4");
  task.temporal.lastMissed = today;
  EXPECT_EQ(shown(), "m 1/3 4");
  EXPECT_EQ(shown({2024, 3, 9}), "i_swi 0/3 0");
  task.temporal.lastCompleted = today;
  questions = 0;
  EXPECT_EQ(shown(), "c 3/3 4");
  EXPECT_EQ(questions, 0);  // nothing is asked for a period that is over
}

TEST_F(TaskStandingTest, CountsAnOpenPeriodOfANegativeTask) {
  task.isNegative = true;
  EXPECT_EQ(shown(), "nc_swi 1/3 5");
  EXPECT_EQ(shown({2024, 3, 9}), "nc_swi 0/3 6");
  task.temporal.lastCompleted = today;
  EXPECT_EQ(shown(), "nc_swi 1/3 4");
  task.temporal.lastSkipped = yesterday;
  EXPECT_EQ(shown(), "nc_swi 1/3 4");
  task.temporal.lastSkipped = today;
  EXPECT_EQ(shown(), "a 3/3 4");
  task.temporal.lastMissed = today;
  EXPECT_EQ(shown(), "nm 3/3 4");
  EXPECT_EQ(shown({2024, 3, 8}), "nc_swi 0/3 1");
}

TEST_F(TaskStandingTest, MeasuresByTheAutomaticType) {
  using Case = std::tuple<TaskType, TypeUnit, double, double, std::string>;
  const Case cases[] = {
      // Three parts of 200 seconds in ten minutes: four and a half are one and 70 seconds.
      {TaskType::timer(), TypeUnit::durationMinutes, 10, 4.5,
       "TaskProgress[timer, 1 of 3 completions, 4.5 of 10]"},
      {HealthType::dietaryDrinkWater, TypeUnit::cupsUS, 0.3, 0.2,
       "TaskProgress[continuous, 2 of 3 completions, 0.2 of 0.3]"},
      {TaskType::screenTime(), TypeUnit::durationMinutes, 60, 40,
       "TaskProgress[continuous, 2 of 3 completions, 40 of 60]"},
      {HealthType::activity, TypeUnit::calories, 0, 150100029,
       "TaskProgress[activity, 0 of 1 completions, 1.501e+08 of 1]"},
      {HealthType::energyDeficit, TypeUnit::calories, 100, 1,
       "TaskProgress[dateRange, 0 of 1 completions, 0.5 of 1]"}};  // noon
  for (const auto& [type, unit, target, value, expected] : cases) {
    task.automaticTaskType = AutomaticTaskType(type, TaskTarget{.quantity = target, .unit = unit});
    task.typeTarget = target;
    task.temporal.progress = value;
    task.temporal.lastCompleted.reset();
    EXPECT_EQ(task.progress(day(today)).debugDescription(task.now), expected);
    task.temporal.lastCompleted = today;
    EXPECT_EQ(shown().front(), 'c');
    EXPECT_EQ(task.progress(day(yesterday)).progressPct(task.now), 0) << expected;
    if (type == TaskType::screenTime()) continue;  // what is measured stays what it is
    EXPECT_EQ(task.progress(day(today)).progressPct(task.now), 1) << expected;
  }
}

TEST_F(TaskStandingTest, AddsTheRunningTimer) {
  task.automaticTaskType = AutomaticTaskType::timer(200, 3, TypeUnit::durationMinutes);
  task.typeTarget = 10;
  task.temporal.progress = 4.5;
  const auto seconds = [&](YYYYMMDD date) {
    return task.progress(day(date)).as<TaskProgressTimer>()->currentCompletionDuration;
  };
  EXPECT_EQ(seconds(today), 70);
  task.runningTimer = RunningTimer{.period = day(today), .duration = 25};
  EXPECT_EQ(seconds(today), 95);
  EXPECT_EQ(seconds(yesterday), 0);
}

}  // namespace
}  // namespace velloro
