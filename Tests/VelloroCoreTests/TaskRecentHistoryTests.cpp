#include "Foundation/Process/VirtualEnvironment.h"
#include "Support/Fixtures.h"
#include "VelloroCore/Log/TaskRecentHistory.h"

#include <gtest/gtest.h>

namespace velloro {
namespace {

using enum TaskLogEntryType;

TaskLogRow rowOf(std::int32_t date, TaskLogEntryType type) {
  return {.entryDate = date, .entryType = static_cast<std::int16_t>(rawValue(type))};
}

// The environment's today is 2024-03-07, a Thursday.
const std::vector<TaskLogRow> log = {
    rowOf(20240307, missedManuallyFull),        rowOf(20240306, completedManuallyFull),
    rowOf(20240305, allowableMissManuallyFull), rowOf(20240303, missedAutomaticallyFull),
    rowOf(20240302, skippedManuallyFull),       rowOf(20240302, completedManuallyPartial),
    rowOf(20240227, completedAutomaticallyFull)};

TEST(TaskRecentHistory, TellsEachPeriod) {
  VirtualEnvironment environment;
  TaskLogRules rules{.timeZone = TimeZone::current(), .now = Date::now()};
  const auto statuses = [&](YYYYMMDD from, YYYYMMDD to, TaskLogRows rows = log) {
    std::string text;
    const auto history = TaskRecentHistory::fromLog(
        rows, {.rules = rules, .from = from, .to = to, .createdDay = {2024, 3, 1}});
    for (const auto& info : sortedOldestToNewest(history.unsortedPeriods())) {
      text += std::string(rawValue(info.status)) + " ";
    }
    return text;
  };
  EXPECT_EQ(statuses({2024, 2, 26}, {2024, 3, 9}), "p c p p s s m s s c cm f f ");
  EXPECT_EQ(statuses({2024, 3, 6}, {2024, 3, 6}), "cc ");  // the last day asked for is the current
  EXPECT_EQ(statuses({2024, 3, 4}, {2024, 3, 4}), "cp ");
  EXPECT_EQ(statuses({2024, 3, 9}, {2024, 3, 8}), "");
  rules.isNegative = true;
  EXPECT_EQ(statuses({2024, 3, 5}, {2024, 3, 5}), "ca ");
  EXPECT_EQ(statuses({2024, 3, 4}, {2024, 3, 4}), "cc ");
  EXPECT_EQ(statuses({2024, 3, 7}, {2024, 3, 7}), "cm ");
  rules.frequency.dayMode = DayMode::aggregateOverWeek;
  EXPECT_EQ(statuses({2024, 2, 20}, {2024, 3, 20}), "p s cm f f ");

  const auto unbounded = [&](TaskLogRows rows) {
    return TaskRecentHistory::fromLog(
        rows, {.rules = rules, .to = {2024, 3, 7}, .createdDay = {2024, 3, 1}});
  };
  EXPECT_EQ(unbounded(log).multi.size(), 2);
  EXPECT_TRUE(unbounded({}).multi.empty());
}

TEST(TaskRecentHistory, CountsSuccess) {
  VirtualEnvironment environment;
  const TaskLogRules rules{.timeZone = TimeZone::current(), .now = Date::now()};
  const auto rate = [&](std::optional<YYYYMMDD> lastCompleted, bool isNegative, TaskLogRows rows) {
    TaskLogRules own = rules;
    own.isNegative = isNegative;
    return PreviousDaysSuccess::fromLog(PreviousSuccessType::last7, rows,
                                        {.rules = own,
                                         .ref = {2024, 3, 7},
                                         .createdDay = {2024, 3, 1},
                                         .lastCompleted = lastCompleted});
  };
  const auto success = [](std::int64_t samples, double pct) {
    return PreviousDaysSuccess{.numSamples = samples, .successPct = pct};
  };
  // Until today is completed, the week ends yesterday, and so includes 29 February.
  std::vector<TaskLogRow> days = log;
  days.insert(days.end() - 1, rowOf(20240229, completedManuallyFull));
  EXPECT_EQ(rate({}, false, days), success(5, 2.0 / 3));
  EXPECT_EQ(rate(YYYYMMDD{2024, 3, 7}, false, days), success(5, 1.0 / 3));
  EXPECT_EQ(rate({}, true, days), success(5, 1.0 / 3));
  EXPECT_EQ(rate({}, true, TaskLogRows(days).subspan(1)), success(5, 2.0 / 3));
  const std::vector<TaskLogRow> skips = {rowOf(20240306, skippedManuallyFull),
                                         rowOf(20240305, allowableMissAutomaticallyFull)};
  EXPECT_EQ(rate({}, false, skips), success(1, 0));

  const auto types = [](TaskFrequencyPeriodType type) {
    const auto [shortTerm, longTerm] = previousSuccessTypes(type);
    return std::string(rawValue(shortTerm)) + " " + std::string(rawValue(longTerm));
  };
  EXPECT_EQ(types(TaskFrequencyPeriodType::day), "last7 last30");
  EXPECT_EQ(types(TaskFrequencyPeriodType::fortnight), "pastMonth pastYear");
  EXPECT_EQ(types(TaskFrequencyPeriodType::month), "pastYear allTime");
}

TEST(TaskRecentHistory, IsSerialised) {
  expectRawValues<TaskCalendarPeriodStatus>({"c", "m", "s", "a", "cp", "cc", "cm", "ca", "f", "p"});
  expectRawValues<PreviousSuccessType>({"last7", "last30", "pastMonth", "pastYear", "allTime"});
  const auto period = [](TaskFrequencyPeriodType type, YYYYMMDD date) {
    return TaskFrequencyPeriod::fromDate(type, date, DayOfWeek::monday, {});
  };
  const TaskRecentHistory history(
      DayOfWeek::monday,
      {{period(TaskFrequencyPeriodType::week, {2024, 3, 6}), TaskCalendarPeriodStatus::current},
       {period(TaskFrequencyPeriodType::day, {2024, 3, 6}), TaskCalendarPeriodStatus::allowedMiss},
       {period(TaskFrequencyPeriodType::day, {2024, 2, 6}), TaskCalendarPeriodStatus::completed},
       {period(TaskFrequencyPeriodType::week, {2024, 2, 27}), TaskCalendarPeriodStatus::past}},
      {.type = PreviousSuccessType::pastMonth, .numSamples = 4, .successPct = 0.75},
      {.type = PreviousSuccessType::pastYear, .numSamples = 12, .successPct = 0.5});
  expectFixture("TaskRecentHistory", history);
  EXPECT_EQ(history.unsortedPeriods({2024, 2}).size(), 2);
  EXPECT_EQ(history.unsortedPeriods({2024, 3}).size(), 3);  // a week of both months is in each
  EXPECT_EQ(sortedNewestToOldest(history.unsortedPeriods()).back().status,
            TaskCalendarPeriodStatus::completed);
}

}  // namespace
}  // namespace velloro
