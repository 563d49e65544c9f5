#include "Foundation/Text/Locale.h"
#include "Support/Fixtures.h"
#include "VelloroCharts/TaskCalendarMonth.h"
#include "VelloroCharts/TaskMiniCharts.h"

#include <string>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using PeriodType = WeekSummary::PeriodType;
using Status = TaskCalendarPeriodStatus;

std::string textOf(const PeriodType& item) {
  if (const auto* day = std::get_if<PeriodType::PreviousMonth>(&item.value)) {
    return "<" + std::to_string(day->day.intValue());
  }
  if (const auto* day = std::get_if<PeriodType::NextMonth>(&item.value)) {
    return ">" + std::to_string(day->day.intValue());
  }
  const auto& [period, status] = std::get<SnapshotPeriod>(item.value).period;
  return std::string(rawValue(status)) + std::to_string(period.startDate.intValue());
}

std::string textOf(const TaskCalendarMonthSnapshot& snapshot) {
  std::string text;
  for (const WeekSummary& week : snapshot.weeks()) {
    for (const PeriodType& item : week.periods) text += textOf(item) + " ";
    text += "\n";
  }
  return text;
}

/// Day by day, from the first row's first day to the last row's last.
std::string plainly(const TaskFrequency& frequency, YYYYMM month, DayOfWeek first, YYYYMMDD today,
                    const std::map<YYYYMMDD, Status>& known) {
  std::map<YYYYMMDD, TaskFrequencyPeriod> periods;  // by their first days
  for (auto p = frequency.period(month.firstDay(), first, {}).period;
       !(frequency.period(month.lastDay(), first, {}).period < p); p = p.next({})) {
    periods.emplace(p.startDate, p);
  }
  std::string text, last;
  const YYYYMMDD end = month.lastDay().endOfWeek(first, {});
  for (YYYYMMDD day = month.firstDay().startOfWeek(first, {}); day <= end; day = day.nextDay({})) {
    std::string item;
    if (day.yyyymm() < month) item = "<" + std::to_string(day.intValue());
    if (day.yyyymm() > month) item = ">" + std::to_string(day.intValue());
    for (const auto& [start, period] : periods) {
      if (day.yyyymm() != month || !period.contains(day)) continue;
      const auto found = known.find(start);
      const bool isAhead = start > today;
      const Status status = found != known.end()     ? found->second
                            : period.contains(today) ? Status::current
                            : isAhead                ? Status::future
                                                     : Status::past;
      item = std::string(rawValue(status)) + std::to_string(start.intValue());
    }
    if (!item.empty() && item != last) text += item + " ";
    last = item;
    if (day.nextDay({}).dayOfWeek({}) == first) {
      text += "\n";
      last.clear();
    }
  }
  return text;
}

TEST(TaskCalendarMonth, HoldsEachDayOfTenYearsInAllModes) {
  const YYYYMMDD today{2021, 5, 12};
  for (const DayMode mode : allCases<DayMode>()) {
    const TaskFrequency frequency{.dayMode = mode};
    for (const DayOfWeek first : allCases<DayOfWeek>()) {
      for (YYYYMM month{2016, 1}; month < YYYYMM{2026, 1}; month = month.nextMonth()) {
        std::vector<TaskCalendarPeriodInfo> infos;
        std::map<YYYYMMDD, Status> known;
        for (auto p = frequency.period(month.firstDay(), first, {}).period;
             p.startDate <= month.lastDay() && p.startDate <= today; p = p.next({})) {
          if (p.startDate.d % 3 == 0) continue;
          infos.push_back({p, p.startDate.d % 2 == 0 ? Status::completed : Status::missed});
          known.emplace(p.startDate, infos.back().status);
        }
        const TaskRecentHistory history(first, infos, {}, {});
        const auto snapshot =
            TaskCalendarMonthSnapshot::of({history, month, frequency, today, first});
        ASSERT_EQ(textOf(snapshot), plainly(frequency, month, first, today, known))
            << static_cast<int>(mode) << " " << month.debugDescription();
        ASSERT_EQ(snapshot.fullItem().has_value(), mode == DayMode::aggregateOverMonth);
        for (const auto& item : snapshot.sortedPeriods) {
          std::int64_t within = 0;
          for (YYYYMMDD day = month.firstDay(); day <= month.lastDay(); day = day.nextDay({})) {
            within += item.period.period.contains(day);
          }
          const auto isWhole = within == month.numberOfDays();
          ASSERT_EQ(item.numDaysInWeek(month), isWhole ? std::nullopt : std::optional(within));
        }
      }
    }
  }
}

TEST(TaskCalendarMonth, KeepsItsForms) {
  const TaskFrequency weekly{.dayMode = DayMode::aggregateOverWeek};
  const auto period = weekly.period({2024, 3, 6}, DayOfWeek::monday, {}).period;
  expectFixture(
      "TaskCalendarMonthSnapshot",
      TaskCalendarMonthSnapshot{{{2024, 3}, DayOfWeek::monday}, {{{period, Status::completed}}}});
  expectFixture("WeekSummary", WeekSummary{{{PeriodType::PreviousMonth{{2024, 2, 29}}},
                                            {SnapshotPeriod{{period, Status::completed}}},
                                            {PeriodType::NextMonth{{2024, 4, 1}}}}});
  const auto streak = TaskMiniChart::currentBestStreak("Current", 5, "Best", 3);
  EXPECT_EQ(streak.progress, 1);
  expectFixture("TaskMiniCharts",
                TaskMiniCharts{streak,
                               TaskMiniChart::currentBestStreak("Current", 0, "Best", 0),
                               {0.5, {"Share", "S", {.percentageValue = 0.456}}, {}}});
  const Locale english = Locale::fromIdentifier("en_US");
  EXPECT_EQ(streak.accessibilityLabel(english), "Current.\n5.\nBest.\n5");
  EXPECT_EQ(TaskMiniChartStatistic::Value{.percentageValue = 0.456}.localizedValue(english), "46%");
}

}  // namespace
}  // namespace velloro
