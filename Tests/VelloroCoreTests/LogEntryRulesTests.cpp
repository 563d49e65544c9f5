#include "VelloroCore/Log/LogEntryRules.h"

#include <gtest/gtest.h>

namespace velloro {
namespace {

using enum TaskLogEntryType;

TaskProgress steps(double done) {
  return TaskProgressDiscrete{
      .period = {}, .expectedCompletions = 4, .numCompletions = static_cast<std::int64_t>(done)};
}
TaskProgress hours(double done) {
  return TaskProgressContinuous{.period = {}, .targetValue = 12, .currentValue = done};
}
TaskProgress tenths(double done) {
  return TaskProgressContinuous{
      .period = {}, .expectedCompletions = 3, .targetValue = 0.3, .currentValue = done};
}
TaskProgress timer(double done) {
  const auto whole = static_cast<std::int64_t>(done / 200);
  return TaskProgressTimer{.period = {},
                           .unit = TaskProgressTimer::Unit::seconds,
                           .expectedCompletions = 3,
                           .numCompletions = whole,
                           .totalTargetDuration = 600,
                           .currentCompletionDuration = done - 200 * static_cast<double>(whole)};
}

TEST(LogEntryRules, SayWhatIsWritten) {
  struct Case {
    TaskProgress (*progress)(double);
    double done;
    std::optional<TaskLogEntryType> type;
    std::optional<double> amount;
    LogStep positive, negative;
  };
  const LogStep wholeMiss{missedManuallyFull, 7}, skip{skippedManuallyFull, 2};
  const Case cases[] = {
      {steps, 1, {}, {}, {completedManuallyPartial, 1}, {missedManuallyPartial, 1}},
      {steps, 1, {}, 3, {completedManuallyFull, 3}, {missedManuallyFull, 3}},
      {hours, 5, {}, {}, {completedManuallyFull, 7}, wholeMiss},
      {hours, 5, {}, 2, {completedManuallyPartial, 2}, {missedManuallyPartial, 2}},
      {timer, 450, {}, {}, {completedManuallyFull, 150}, {missedManuallyFull, 150}},
      {timer, 250, {}, {}, {completedManuallyPartial, 150}, {missedManuallyPartial, 150}},
      {tenths, 0.1 + 0.1, {}, {}, {completedManuallyFull, 0.1}, {missedManuallyFull, 0.1}},
      // A tap on what is done begins another completion; of the whole nothing is left.
      {steps, 4, {}, {}, {completedManuallyFull, 1}, {missedManuallyFull, 1}},
      {hours, 12, {}, {}, {completedManuallyFull, 12}, {missedManuallyFull, 12}},
      {timer, 600, {}, {}, {completedManuallyFull, 200}, {missedManuallyFull, 200}},
      {hours,
       12,
       completedManuallyFull,
       {},
       {completedManuallyFull, 0},
       {completedManuallyFull, 0}},
      // What does not count for the task takes nothing, keeps what was said, and settles nothing.
      {hours, 5, missedManuallyPartial, {}, {missedManuallyPartial, 0}, wholeMiss},
      {hours, 5, missedManuallyPartial, 7, {missedManuallyPartial, 7}, wholeMiss},
      {hours, 5, missedManuallyFull, {}, {missedManuallyFull, 0}, wholeMiss},
      {hours, 5, skippedManuallyFull, 2, skip, skip},
      {timer, 450, timerManual, 400, {timerManual, 400}, {timerManual, 400}}};
  for (const Case& one : cases) {
    for (const bool isNegative : {false, true}) {
      const LogStep step = nextLogStep({.type = one.type,
                                        .amount = one.amount,
                                        .isNegative = isNegative,
                                        .progress = one.progress(one.done),
                                        .done = one.done,
                                        .now = {}});
      const LogStep& expected = isNegative ? one.negative : one.positive;
      EXPECT_EQ(step.type, expected.type) << &one - cases << isNegative;
      EXPECT_NEAR(step.amount, expected.amount, 1e-12) << &one - cases << isNegative;
    }
  }
}

TEST(LogEntryRules, AddUpWhatCounts) {
  const LogStep log[] = {{completedManuallyPartial, 1}, {missedManuallyPartial, 2},
                         {timerAutomatic, 4},           {skippedManuallyFull, 8},
                         {missedAutomaticallyFull, 16}, {completedAutomaticallyFull, 32}};
  EXPECT_EQ(runningTotals(log, false), (std::vector<double>{1, 1, 5, 5, 5, 37}));
  EXPECT_EQ(runningTotals(log, true), (std::vector<double>{0, 2, 6, 6, 22, 22}));
}

}  // namespace
}  // namespace velloro
