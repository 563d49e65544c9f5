#include "VelloroCore/TaskFrequencyPeriod.h"

#include "VelloroCore/DatedPeriod.h"

#include <algorithm>
#include <cstdlib>
#include <tuple>

namespace velloro {

TaskFrequencyPeriod TaskFrequencyPeriod::fromDate(TaskFrequencyPeriodType periodType, YYYYMMDD date,
                                                  DayOfWeek firstDayOfWeek) {
  const auto period = [&](YYYYMMDD startDate, YYYYMMDD finishDate) {
    return TaskFrequencyPeriod{periodType, startDate, finishDate, firstDayOfWeek};
  };
  switch (periodType) {
    case TaskFrequencyPeriodType::day:
      break;
    case TaskFrequencyPeriodType::week: {
      const YYYYMMDD startDate = date.startOfWeek(firstDayOfWeek);
      return period(startDate, startDate.add(6));
    }
    case TaskFrequencyPeriodType::fortnight: {
      const YYYYMMDD startDate = date.startOfFortnight(firstDayOfWeek);
      return period(startDate, startDate.add(13));
    }
    case TaskFrequencyPeriodType::month:
      return period(date.yyyymm().firstDay(), date.yyyymm().lastDay());
    case TaskFrequencyPeriodType::year:
      return period(date.yyyymm().firstMonthOfYear().firstDay(),
                    date.yyyymm().lastMonthOfYear().lastDay());
  }
  return period(date, date);
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
