#include "Foundation/Process/VirtualEnvironment.h"
#include "OxCheckableTasks/Icons/IconManagerIconCases.h"
#include "Support/Fixtures.h"
#include "VelloroCore/Frequency/DatedPeriod.h"

#include <gmock/gmock.h>

namespace velloro {
namespace {

using enum TaskFrequencyPeriodType;
using testing::ElementsAre;

YYYYMMDD date(std::int64_t value) {
  return YYYYMMDD::fromRawValue(value).value();
}

TaskFrequencyPeriod period(TaskFrequencyPeriodType type, std::int64_t day,
                           DayOfWeek first = DayOfWeek::sunday) {
  return TaskFrequencyPeriod::fromDate(type, date(day), first, {});
}

TEST(TaskFrequencyPeriod, KeepsItsForm) {
  expectRawValues<TaskFrequencyPeriodType>({"d", "w", "f", "m", "y"});
  EXPECT_LT(day, week);
  const auto days = period(week, 20240306, DayOfWeek::monday);
  expectFixture("TaskFrequencyPeriod", days);
  expectFixture("DatedPeriod", DatedPeriod{date(20240306), days});
}

TEST(TaskFrequencyPeriod, HoldsItsDate) {
  struct Case {
    TaskFrequencyPeriodType type;
    std::int64_t date;
    DayOfWeek first;
    std::int64_t start, finish;
  };
  using enum DayOfWeek;
  const Case cases[] = {{TaskFrequencyPeriodType::day, 20240306, sunday, 20240306, 20240306},
                        {week, 20240306, sunday, 20240303, 20240309},
                        {week, 20240306, wednesday, 20240306, 20240312},
                        {week, 20240101, sunday, 20231231, 20240106},
                        {fortnight, 20000108, sunday, 19991226, 20000108},
                        {fortnight, 20000109, sunday, 20000102, 20000115},
                        {fortnight, 20000115, sunday, 20000109, 20000122},
                        {fortnight, 20000114, saturday, 20000101, 20000114},
                        {month, 20240229, sunday, 20240201, 20240229},
                        {month, 20231231, sunday, 20231201, 20231231},
                        {year, 20240306, sunday, 20240101, 20241231}};
  for (const auto& [type, value, first, start, finish] : cases) {
    const auto found = period(type, value, first);
    EXPECT_EQ(found.startDate, date(start)) << value;
    EXPECT_EQ(found.finishDate, date(finish)) << value;
    EXPECT_EQ(firstDate(type, date(value), first, {}), date(start)) << value;
    EXPECT_EQ(lastDate(type, date(value), first, {}), date(finish)) << value;
  }
}

/// What must hold of every period, whatever the way to find it.
void expectSound(const TaskFrequencyPeriod& found, YYYYMMDD today) {
  static constexpr std::int64_t lengths[][2] = {{1, 1}, {7, 7}, {14, 14}, {28, 31}, {365, 366}};
  const auto [shortest, longest] = lengths[static_cast<int>(found.periodType)];
  const YYYYMMDD behind = found.finishDate.nextDay({});
  ASSERT_TRUE(found.contains(today)) << today.debugDescription();
  ASSERT_GE(found.numberOfDays({}), shortest) << today.debugDescription();
  ASSERT_LE(found.numberOfDays({}), longest) << today.debugDescription();
  if (found.periodType == week || found.periodType == fortnight) {
    ASSERT_EQ(found.startDate.dayOfWeek({}), found.firstDayOfWeek) << today.debugDescription();
  } else if (found.periodType != day) {
    ASSERT_TRUE(found.startDate.d == 1 && behind.d == 1) << today.debugDescription();
    ASSERT_TRUE(found.periodType == month || (found.startDate.m == 1 && behind.m == 1));
  }
  const bool mayOverlap = found.periodType == fortnight;
  const TaskFrequencyPeriod next = found.next({});
  const TaskFrequencyPeriod previous = found.previous({});
  ASSERT_TRUE(next.contains(behind)) << today.debugDescription();
  ASSERT_TRUE(previous.contains(found.startDate.previousDay({}))) << today.debugDescription();
  ASSERT_TRUE(mayOverlap || next.startDate == behind) << today.debugDescription();
  ASSERT_TRUE(mayOverlap || previous.next({}) == found) << today.debugDescription();
}

TEST(TaskFrequencyPeriod, IsSoundOnEveryDayOf200Years) {
  VirtualEnvironment environment;
  for (const DayOfWeek first : allCases<DayOfWeek>()) {
    for (YYYYMMDD today = date(19000101); today < date(21000101); today = today.nextDay({})) {
      for (const auto type : allCases<TaskFrequencyPeriodType>()) {
        expectSound(TaskFrequencyPeriod::fromDate(type, today, first, {}), today);
        if (HasFatalFailure()) return;
      }
    }
  }
}

/// From the anchor on, fortnights that begin on its weekday lie side by side.
TEST(TaskFrequencyPeriod, CountsFortnightsFromTheAnchor) {
  auto found = period(fortnight, 20000101, DayOfWeek::saturday);
  for (YYYYMMDD today = date(20000101); today < date(21000101); today = today.nextDay({})) {
    if (today > found.finishDate) found = found.next({});
    const auto start = date(20000101).add(date(20000101).distance(today) / 14 * 14, {});
    ASSERT_EQ(found.startDate, start) << today.debugDescription();
    ASSERT_EQ(period(fortnight, today.intValue(), DayOfWeek::saturday), found);
  }
}

TEST(TaskFrequencyPeriod, StepsByPeriods) {
  const auto january = period(month, 20240131);
  EXPECT_EQ(january.add(0, {}), january);
  EXPECT_EQ(january.add(1, {}).finishDate, date(20240229));
  EXPECT_EQ(january.add(-11, {}).startDate, date(20230201));
  EXPECT_EQ(period(week, 20240306).add(-1, {}), period(week, 20240302));
  EXPECT_EQ(period(fortnight, 20000108).next({}), period(fortnight, 20000102));
}

TEST(TaskFrequencyPeriod, ComparesDaysAndNotTypes) {
  const auto today = period(day, 20240301);
  auto other = today;
  other.periodType = month;
  EXPECT_EQ(today, other);
  EXPECT_EQ(hashValue(today), hashValue(other));
  EXPECT_NE(today, period(day, 20240301, DayOfWeek::monday));
  EXPECT_LT(today, period(day, 20240301, DayOfWeek::monday));
  EXPECT_LT(period(month, 20240229), today);
  EXPECT_TRUE((today <=> period(month, 20240310)) == 0) << "the same first day";
  const auto march = period(month, 20240310);
  EXPECT_THAT(sortedOldestToNewest({march, today, period(year, 20240310)}),
              ElementsAre(period(year, 20240310), today, march));
  EXPECT_THAT(sortedNewestToOldest({march, today}), ElementsAre(march, today));
}

TEST(TaskFrequencyPeriod, CountsItsDays) {
  const auto days = period(week, 20240228);  // 25 February to 2 March
  EXPECT_EQ(days.remainingDays(date(20240224), false, {}), 7);
  EXPECT_EQ(days.remainingDays(date(20240225), false, {}), 6);
  EXPECT_EQ(days.remainingDays(date(20240225), true, {}), 7);
  EXPECT_EQ(days.remainingDays(date(20240302), false, {}), 0);
  EXPECT_EQ(days.remainingDays(date(20240303), true, {}), 0);
  EXPECT_EQ(days.numberOfDaysInStartingMonth(), 5);
  EXPECT_EQ(days.numberOfDaysInFinishMonth(), 2);
  EXPECT_EQ(period(week, 20240306).numberOfDaysInStartingMonth(), 7);
  EXPECT_EQ(period(week, 20240306).numberOfDaysInFinishMonth(), 7);
  EXPECT_TRUE(days.startsAfter(date(20240224)));
  EXPECT_FALSE(days.startsAfter(date(20240225)));
  EXPECT_TRUE(days.endsBefore(date(20240303)));
  EXPECT_FALSE(days.endsBefore(date(20240302)));

  const YYYYMM january{2024, 1}, february{2024, 2}, march{2024, 3}, april{2024, 4};
  EXPECT_FALSE(days.contains(january) || days.contains(april));
  EXPECT_EQ(days.firstDayInMonth(january), std::nullopt);
  EXPECT_EQ(days.lastDayInMonth(april), std::nullopt);
  EXPECT_EQ(days.firstDayInMonth(february), date(20240225));
  EXPECT_EQ(days.lastDayInMonth(february), date(20240229));
  EXPECT_EQ(days.firstDayInMonth(march), date(20240301));
  EXPECT_EQ(days.lastDayInMonth(march), date(20240302));
}

TEST(TaskFrequencyPeriod, KnowsToday) {
  const TimeZone berlin = TimeZone::fromIdentifier("Europe/Berlin").value();
  const Date noon = Date::fromISO8601("2024-03-07T11:00:00Z").value();
  const HHMMSS evening{.h = 18}, midnight = HHMMSS::midnight;
  const auto today = period(day, 20240307);
  EXPECT_TRUE(today.isCurrentPeriod(midnight, berlin, noon));
  EXPECT_FALSE(
      today.isCurrentPeriod(midnight, TimeZone::fromIdentifier("Pacific/Auckland").value(), noon));
  EXPECT_TRUE(today.isCurrentPeriod(evening, berlin, noon));
  EXPECT_FALSE(today.isCurrentPeriod(evening, berlin, noon + 6 * 3600)) << "the 8th has begun";

  const struct {
    std::int64_t inWeekOf, latest;
  } cases[] = {{20240307, 20240307}, {20240221, 20240224}, {20240310, 20240310}};
  for (const auto& [inWeekOf, latest] : cases) {
    const auto dated = period(week, inWeekOf).latestPossibleDatedPeriod(midnight, berlin, noon);
    EXPECT_EQ(dated, (DatedPeriod{date(latest), period(week, inWeekOf)}));
  }
}

TEST(DatedPeriod, TellsHowFarItIs) {
  const auto progress = [](std::int64_t day) {
    return DatedPeriod{date(day), period(week, 20240306)}.periodProgressAtEndOfToday({});
  };
  EXPECT_DOUBLE_EQ(progress(20240302), 0);
  EXPECT_DOUBLE_EQ(progress(20240303), 1 / 7.0);
  EXPECT_DOUBLE_EQ(progress(20240306), 4 / 7.0);
  EXPECT_DOUBLE_EQ(progress(20240309), 1);
  EXPECT_DOUBLE_EQ(progress(20240310), 1);
  auto reversed = DatedPeriod::fromDate(date(20240306), week, DayOfWeek::sunday, {});
  std::swap(reversed.period.startDate, reversed.period.finishDate);
  EXPECT_DOUBLE_EQ(reversed.periodProgressAtEndOfToday({}), 1);
  EXPECT_TRUE(DatedPeriod::fromDate(date(20240309), week, DayOfWeek::sunday, {}).isLastDay());
  EXPECT_FALSE(DatedPeriod::fromDate(date(20240308), week, DayOfWeek::sunday, {}).isLastDay());
}

TEST(MultiDayCount, IsThatOfTheCurrentPeriod) {
  EXPECT_EQ(id(MultiDayCount::duration29), "d29");
  EXPECT_EQ(icon(MultiDayCount::duration29), IconManagerIcon::duration_29);
  expectRawValues<MultiDayCount>({"d1", "d7", "d14", "d28", "d29", "d30", "d31", "d365", "d366"});
  const TimeZone berlin = TimeZone::fromIdentifier("Europe/Berlin").value();
  const struct {
    const char* now;
    std::vector<int> days;
  } cases[] = {{"2024-02-10T12:00:00Z", {1, 7, 14, 29, 366}},
               {"2023-02-10T12:00:00Z", {1, 7, 14, 28, 365}},
               {"2024-04-10T12:00:00Z", {1, 7, 14, 30, 366}},
               {"2023-12-31T23:30:00Z", {1, 7, 14, 31, 366}}};  // 2024 has begun in Berlin
  for (const auto& [now, days] : cases) {
    std::vector<int> found;
    for (const auto type : allCases<TaskFrequencyPeriodType>()) {
      const auto count = multiDayCountTypeForCurrentPeriod(type, HHMMSS::midnight, berlin,
                                                           Date::fromISO8601(now).value());
      found.push_back(static_cast<int>(numDays(count)));
    }
    EXPECT_EQ(found, days) << now;
  }
}

}  // namespace
}  // namespace velloro
