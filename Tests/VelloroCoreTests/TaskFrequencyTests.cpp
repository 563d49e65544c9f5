#include "Foundation/Process/VirtualEnvironment.h"
#include "Support/Fixtures.h"
#include "VelloroCore/Frequency/TaskFrequency.h"

#include <gmock/gmock.h>

namespace velloro {
namespace {

using enum DayMode;
using Type = TaskFrequencyPeriodType;
using testing::ElementsAre;

YYYYMMDD date(std::int64_t value) {
  return YYYYMMDD::fromRawValue(value).value();
}

TEST(TaskFrequency, KeepsItsForm) {
  expectRawValues<DayMode>({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
  EXPECT_EQ(rawValue(aggregateOverFortnight), 8);
  EXPECT_EQ(rawValue(specificDaysOfMonth), 10);
  expectRawValues<SkipMode>({"mwi", "mwoi", "swi", "swoi"});
  const TaskFrequency frequency{.dayMode = numberOfDaysInFortnight,
                                .days = {DayOfWeek::friday, DayOfWeek::sunday, DayOfWeek::monday},
                                .daysOfMonth = {DaysOfMonth::day31, DaysOfMonth::lastDayMinus7},
                                .numPartialCompletions = 3,
                                .numCompletions = 5,
                                .dayInterval = 4};
  expectFixture("TaskFrequency", frequency);
  EXPECT_EQ(decodingFailure<TaskFrequency>(
                R"({"dayMode":0,"days":[7],"daysOfMonth":0,"numPartialCompletions":1,)"
                R"("numCompletions":1,"dayInterval":2})")
                .substr(0, 8),
            "days[0]:");
  EXPECT_EQ(frequency.debugDescription(),
            "TaskFrequency(dayMode=5, days=[0, 1, 5], daysOfMonth=72057596185411584, "
            "periodTypeForCompletion=d, periodTypeForCompletionCountCalculation=f, "
            "numPartialCompletions=3, numCompletions=5, dayInterval=4)");
}

TEST(TaskFrequency, StartsWithEveryDay) {
  EXPECT_EQ(JSONEncoder{}.encode(TaskFrequency::defaultFrequency),
            R"({"dayMode":0,"days":[0,1,2,3,4,5,6],"daysOfMonth":0,"numPartialCompletions":1,)"
            R"("numCompletions":7,"dayInterval":2})");
  TaskFrequency frequency = TaskFrequency::defaultFrequency;
  frequency.set(DayOfWeek::monday, false);
  EXPECT_FALSE(frequency.hasDay(DayOfWeek::monday));
  frequency.set(DayOfWeek::monday, true);
  EXPECT_EQ(frequency, TaskFrequency::defaultFrequency);
}

TEST(DaysOfMonth, CountsFromBothEnds) {
  EXPECT_EQ(DaysOfMonth::day1.rawValue, 2);
  EXPECT_EQ(DaysOfMonth::day31.rawValue, std::int64_t{1} << 31);
  EXPECT_EQ(DaysOfMonth::lastDay().rawValue, INT64_MIN);
  EXPECT_EQ(DaysOfMonth::lastDayMinus7.rawValue, std::int64_t{1} << 56);
  EXPECT_EQ(DaysOfMonth::lastDay(63), DaysOfMonth::day(0));
  for (const std::int64_t none : {-1, 64}) {
    EXPECT_TRUE(DaysOfMonth::day(none).isEmpty() && DaysOfMonth::lastDay(none).isEmpty()) << none;
  }
  DaysOfMonth days{DaysOfMonth::lastDay(), DaysOfMonth::day15};
  EXPECT_EQ(days.remove(DaysOfMonth::day15), DaysOfMonth::day15);
  EXPECT_EQ(days, DaysOfMonth::lastDay());
}

TEST(DayMode, SortsForChoice) {
  EXPECT_EQ(sortedModes().size(), 10u);
  EXPECT_THAT(sortedModes(Type::day),
              ElementsAre(specificDaysOfWeek, numberOfDaysInWeek, numberOfDaysInFortnight,
                          numberOfDaysInMonth, numberOfDaysInYear, dayInterval));
  EXPECT_THAT(sortedModes(Type::fortnight), ElementsAre(aggregateOverFortnight));
}

TEST(TaskFrequency, FindsItsPeriod) {
  VirtualEnvironment environment;  // noon of Thursday 2024-03-07 in Berlin
  const auto dated = [&](DayMode mode) {
    return TaskFrequency{.dayMode = mode}.currentPeriod(HHMMSS::midnight, DayOfWeek::monday,
                                                        TimeZone::current(), Date::now());
  };
  EXPECT_EQ(dated(numberOfDaysInYear).period.numberOfDays({}), 1);
  EXPECT_EQ(dated(aggregateOverWeek).date, date(20240307));
  EXPECT_EQ(dated(aggregateOverWeek).period.startDate, date(20240304));
  EXPECT_EQ(dated(aggregateOverMonth).period.periodType, Type::month);
  const TaskFrequency yearly{.dayMode = aggregateOverYear};
  const Date newYear = Date::fromISO8601("2024-01-01T01:30:00Z").value();
  EXPECT_EQ(yearly.period({.h = 3}, newYear, DayOfWeek::monday, TimeZone::current()).date,
            date(20231231));
  EXPECT_EQ(yearly.startOfPeriod(date(20231231), DayOfWeek::monday, {}), date(20230101));
}

TEST(TaskFrequency, ExpectsNoMoreThanThereAreDaysAtFirst) {
  const auto expected = [](std::int64_t count, std::int64_t day, std::int64_t created) {
    const TaskFrequency frequency{.dayMode = numberOfDaysInMonth, .numCompletions = count};
    const auto period = frequency.period(date(day), DayOfWeek::sunday, {}).period;
    return frequency.numberOfExpectedTimes(period, date(created), {});
  };
  EXPECT_EQ(expected(31, 20240220, 20240229), 29);
  EXPECT_EQ(expected(31, 20240401, 20240229), 31);
  EXPECT_EQ(expected(31, 20240201, 20240131), 31);
  EXPECT_EQ(expected(10, 20240220, 20240201), 10);
  EXPECT_EQ(expected(0, 20240220, 20240201), 1);
}

TEST(TaskFrequency, IsEmptyWhenNoDayCanBeDue) {
  const auto isEmpty = [](const TaskFrequency& frequency) { return frequency.isEmpty(); };
  EXPECT_FALSE(isEmpty({}));
  EXPECT_TRUE(isEmpty({.numPartialCompletions = 0}));
  EXPECT_TRUE(isEmpty({.days = {}}));
  for (const DayMode mode :
       {numberOfDaysInWeek, numberOfDaysInFortnight, numberOfDaysInMonth, numberOfDaysInYear}) {
    EXPECT_FALSE(isEmpty({.dayMode = mode, .days = {}, .numCompletions = 1}));
    EXPECT_TRUE(isEmpty({.dayMode = mode, .numCompletions = 0}));
  }
  for (const std::int64_t interval : {1, 2, 30, 31}) {
    EXPECT_EQ(isEmpty({.dayMode = dayInterval, .dayInterval = interval}),
              interval == 1 || interval == 31);
  }
  for (const DayMode mode : {aggregateOverWeek, aggregateOverFortnight, aggregateOverMonth,
                             aggregateOverYear, specificDaysOfMonth}) {
    EXPECT_EQ(isEmpty({.dayMode = mode, .days = {}, .numCompletions = 0}),
              mode == specificDaysOfMonth);
  }
}

}  // namespace
}  // namespace velloro
