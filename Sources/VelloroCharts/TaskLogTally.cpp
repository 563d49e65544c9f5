#include "VelloroCharts/TaskLogTally.h"

#include <algorithm>
#include <ranges>

namespace velloro {
namespace {

bool isWithin(const YYYYMMDD::Range& range, YYYYMMDD day) {
  return (!range.minDate || *range.minDate <= day) && (!range.maxDate || day <= *range.maxDate);
}

/// The days of a stretch of time that are not yet to come.
YYYYMMDD::Range pastDays(const TaskChartsTimePeriod& timePeriod, YYYYMMDD today) {
  YYYYMMDD::Range days = timePeriod.days(today);
  days.maxDate = std::min(days.maxDate.value_or(today), today);
  return days;
}

}  // namespace

YYYYMMDD::Range TaskLogTally::dates(const TaskLogRules& rules,
                                    const TaskChartsTimePeriod& timePeriod) {
  const YYYYMMDD today = rules.today();
  YYYYMMDD::Range dates = timePeriod.days(today);
  if (dates.minDate) dates.minDate = rules.period(std::min(*dates.minDate, today)).startDate;
  dates.maxDate = rules.period(today).finishDate;
  return dates;
}

TaskLogTally TaskLogTally::fromLog(TaskLogRows rows, const TaskLogRules& rules,
                                   const TaskChartsTimePeriod& timePeriod) {
  TaskLogTally tally;
  const YYYYMMDD today = rules.today();
  const YYYYMMDD::Range counted = pastDays(timePeriod, today);
  const std::int64_t current = rules.startOfPeriod(today).intValue();
  const auto entries = fullEntriesByPeriod(rows, rules, dates(rules, timePeriod));
  tally.days.reserve(entries.size());
  for (const PeriodEntry& entry : entries | std::views::reverse) {
    if (entry.periodStart == current) tally.isTodayOpen = false;
    const bool isCompleted = isCompletedFull(entry.type);
    if (!isCompleted && !isMissedFull(entry.type)) continue;
    const TaskLogRow& row = rows[entry.row];
    const YYYYMMDD date = row.date().value_or(YYYYMMDD());
    if (isWithin(counted, date)) tally.add(row, date, isCompleted, rules);
  }
  tally.sortDays();
  return tally;
}

void TaskLogTally::add(const TaskLogRow& row, YYYYMMDD date, bool isCompleted,
                       const TaskLogRules& rules) {
  const Date made =
      row.createdTimestamp.value_or(date.startOfDay(rules.startOfDay, rules.timeZone));
  const HHMMSS time = HHMMSS::fromDate(made, row.timeZone(rules.timeZone));
  all.add(isCompleted);
  hours[static_cast<std::size_t>(time.h)].add(isCompleted);
  daysOfWeek[static_cast<std::size_t>(date.dayOfWeek(rules.timeZone))].add(isCompleted);
  if (days.empty() || days.back().day != date) days.emplace_back().day = date;
  days.back().add(isCompleted);
}

/// Fortnights can overlap, so that their entries are not in the order of the days.
void TaskLogTally::sortDays() {
  if (std::ranges::is_sorted(days, std::ranges::less_equal(), &Day::day)) return;
  std::ranges::stable_sort(days, {}, &Day::day);
  std::vector<Day> merged;
  for (const Day& day : days) {
    if (merged.empty() || merged.back().day != day.day) merged.emplace_back().day = day.day;
    merged.back().completed += day.completed;
    merged.back().missed += day.missed;
  }
  days = std::move(merged);
}

}  // namespace velloro
