#include "VelloroCharts/TaskCalendarMonth.h"

#include <algorithm>

namespace velloro {
namespace {

using Status = TaskCalendarPeriodStatus;

TaskCalendarPeriodInfo withoutEntry(const TaskFrequencyPeriod& period, YYYYMMDD today) {
  if (period.contains(today)) return {period, Status::current};
  return {period, period.startsAfter(today) ? Status::future : Status::past};
}

}  // namespace

std::optional<std::int64_t> SnapshotPeriod::numDaysInWeek(YYYYMM month) const {
  const TaskFrequencyPeriod& of = period.period;
  if (of.periodType == TaskFrequencyPeriodType::day) return 1;
  const bool beginsBefore = of.startDate < month.firstDay();
  const bool endsBehind = month.lastDay() < of.finishDate;
  const bool isWhole = of.startDate <= month.firstDay() && month.lastDay() <= of.finishDate;
  if (isWhole || of.periodType == TaskFrequencyPeriodType::month) return std::nullopt;
  if (beginsBefore) return of.numberOfDaysInFinishMonth();
  return endsBehind ? of.numberOfDaysInStartingMonth() : of.numberOfDays({});
}

TaskCalendarMonthSnapshot TaskCalendarMonthSnapshot::of(const Question& question) {
  const auto& [history, month, frequency, today, firstDayOfWeek, zone] = question;
  const auto known = history.unsortedPeriods(month);
  const auto last = frequency.period(month.lastDay(), firstDayOfWeek, zone).period;
  TaskCalendarMonthSnapshot snapshot{{month, firstDayOfWeek}, {}};
  for (auto period = frequency.period(month.firstDay(), firstDayOfWeek, zone).period;
       !(last < period); period = period.next(zone)) {
    const auto found = std::ranges::find(known, period, &TaskCalendarPeriodInfo::period);
    snapshot.sortedPeriods.push_back({found != known.end() ? *found : withoutEntry(period, today)});
  }
  return snapshot;
}

std::optional<TaskCalendarPeriodInfo> TaskCalendarMonthSnapshot::fullItem() const {
  if (sortedPeriods.size() != 1) return std::nullopt;
  const TaskCalendarPeriodInfo& only = sortedPeriods.front().period;
  if (only.period.numberOfDays({}) != month.month.numberOfDays()) return std::nullopt;
  return only;
}

std::vector<WeekSummary> TaskCalendarMonthSnapshot::weeks() const {
  const auto& [of, firstDayOfWeek] = month;
  YYYYMMDD day = of.firstDay().add(-of.numberOfDaysInWeekBeforeMonthStarts(firstDayOfWeek), {});
  std::vector<WeekSummary> weeks;
  while (day <= of.lastDay()) {
    WeekSummary& week = weeks.emplace_back();
    for (int i = 0; i < 7; ++i, day = day.nextDay({})) add(day, week);
  }
  return weeks;
}

/// Where fortnights overlap, the later one has the day.
void TaskCalendarMonthSnapshot::add(YYYYMMDD day, WeekSummary& week) const {
  using PeriodType = WeekSummary::PeriodType;
  if (day < month.month.firstDay()) {
    week.periods.push_back({PeriodType::PreviousMonth{day}});
  } else if (day > month.month.lastDay()) {
    week.periods.push_back({PeriodType::NextMonth{day}});
  } else {
    const auto holds = [&](const SnapshotPeriod& item) { return item.period.period.contains(day); };
    const auto item = std::ranges::find_if(sortedPeriods.rbegin(), sortedPeriods.rend(), holds);
    if (item == sortedPeriods.rend()) return;
    const PeriodType held{*item};
    if (week.periods.empty() || week.periods.back() != held) week.periods.push_back(held);
  }
}

}  // namespace velloro
