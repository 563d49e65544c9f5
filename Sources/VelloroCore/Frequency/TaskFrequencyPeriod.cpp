#include "VelloroCore/Frequency/TaskFrequencyPeriod.h"

#include "VelloroCore/Frequency/DatedPeriod.h"

#include <algorithm>
#include <cstdlib>
#include <tuple>

namespace velloro {

TaskFrequencyPeriod TaskFrequencyPeriod::fromDate(TaskFrequencyPeriodType periodType, YYYYMMDD date,
                                                  DayOfWeek firstDayOfWeek) {
  const auto weeks = [&](const YYYYMMDD& startDate, std::int64_t numDays) {
    return TaskFrequencyPeriod{periodType, startDate, startDate.add(numDays - 1), firstDayOfWeek};
  };
  const auto months = [&](YYYYMM first, YYYYMM last) {
    return TaskFrequencyPeriod{periodType, first.firstDay(), last.lastDay(), firstDayOfWeek};
  };
  const YYYYMM month = date.yyyymm();
  switch (periodType) {
    case TaskFrequencyPeriodType::day:
      break;
    case TaskFrequencyPeriodType::week:
      return weeks(date.startOfWeek(firstDayOfWeek), 7);
    case TaskFrequencyPeriodType::fortnight:
      return weeks(date.startOfFortnight(firstDayOfWeek), 14);
    case TaskFrequencyPeriodType::month:
      return months(month, month);
    case TaskFrequencyPeriodType::year:
      return months(month.firstMonthOfYear(), month.lastMonthOfYear());
  }
  return {periodType, date, date, firstDayOfWeek};
}

std::weak_ordering TaskFrequencyPeriod::operator<=>(const TaskFrequencyPeriod& other) const {
  return std::tie(startDate, firstDayOfWeek) <=> std::tie(other.startDate, other.firstDayOfWeek);
}

bool TaskFrequencyPeriod::contains(YYYYMM month) const {
  return month.lastDay() >= startDate && month.firstDay() <= finishDate;
}

bool TaskFrequencyPeriod::isCurrentPeriod(HHMMSS startOfDay,
                                          std::optional<TimeZone> timeZone) const {
  return contains(YYYYMMDD::today(startOfDay, timeZone));
}

std::int64_t TaskFrequencyPeriod::numberOfDays() const {
  return startDate.distance(finishDate, true);
}

std::int64_t TaskFrequencyPeriod::remainingDays(YYYYMMDD from, bool includeThisDay) const {
  if (startsAfter(from)) return numberOfDays();
  if (endsBefore(from)) return 0;
  return from.distance(finishDate, includeThisDay);
}

TaskFrequencyPeriod TaskFrequencyPeriod::next() const {
  return fromDate(periodType, finishDate.nextDay(), firstDayOfWeek);
}

TaskFrequencyPeriod TaskFrequencyPeriod::previous() const {
  return fromDate(periodType, startDate.previousDay(), firstDayOfWeek);
}

TaskFrequencyPeriod TaskFrequencyPeriod::add(std::int64_t numPeriods) const {
  TaskFrequencyPeriod period = *this;
  for (; numPeriods > 0; --numPeriods) period = period.next();
  for (; numPeriods < 0; ++numPeriods) period = period.previous();
  return period;
}

DatedPeriod TaskFrequencyPeriod::latestPossibleDatedPeriod(HHMMSS startOfDay,
                                                           std::optional<TimeZone> timeZone) const {
  const YYYYMMDD today = YYYYMMDD::today(startOfDay, timeZone);
  const YYYYMMDD date = endsBefore(today) ? finishDate : std::max(today, startDate);
  return {.date = date, .period = *this};
}

std::int64_t TaskFrequencyPeriod::numberOfDaysInStartingMonth() const {
  return startDate.distance(std::min(finishDate, startDate.yyyymm().lastDay()), true);
}

std::int64_t TaskFrequencyPeriod::numberOfDaysInFinishMonth() const {
  return std::max(startDate, finishDate.yyyymm().firstDay()).distance(finishDate, true);
}

std::optional<YYYYMMDD> TaskFrequencyPeriod::firstDayInMonth(YYYYMM month) const {
  if (!contains(month)) return std::nullopt;
  return std::max(month.firstDay(), startDate);
}

std::optional<YYYYMMDD> TaskFrequencyPeriod::lastDayInMonth(YYYYMM month) const {
  if (!contains(month)) return std::nullopt;
  return std::min(month.lastDay(), finishDate);
}

std::vector<TaskFrequencyPeriod> sortedOldestToNewest(std::vector<TaskFrequencyPeriod> periods) {
  std::ranges::stable_sort(periods, {}, [](const TaskFrequencyPeriod& period) {
    return std::pair(period.startDate, period.finishDate);
  });
  return periods;
}

std::vector<TaskFrequencyPeriod> sortedNewestToOldest(std::vector<TaskFrequencyPeriod> periods) {
  auto sorted = sortedOldestToNewest(std::move(periods));
  std::ranges::reverse(sorted);
  return sorted;
}

}  // namespace velloro
