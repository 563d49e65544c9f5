#include "VelloroCore/Frequency/TaskFrequencyPeriod.h"

#include "VelloroCore/Frequency/DatedPeriod.h"

#include <algorithm>
#include <cstdlib>
#include <tuple>

namespace velloro {

TaskFrequencyPeriod TaskFrequencyPeriod::fromDate(TaskFrequencyPeriodType periodType, YYYYMMDD date,
                                                  DayOfWeek firstDayOfWeek,
                                                  const CountedIn& timeZone) {
  const auto weeks = [&](const YYYYMMDD& startDate, std::int64_t numDays) {
    return TaskFrequencyPeriod{periodType, startDate, startDate.add(numDays - 1, timeZone),
                               firstDayOfWeek};
  };
  const auto months = [&](YYYYMM first, YYYYMM last) {
    return TaskFrequencyPeriod{periodType, first.firstDay(), last.lastDay(), firstDayOfWeek};
  };
  const YYYYMM month = date.yyyymm();
  switch (periodType) {
    case TaskFrequencyPeriodType::day:
      break;
    case TaskFrequencyPeriodType::week:
      return weeks(date.startOfWeek(firstDayOfWeek, timeZone), 7);
    case TaskFrequencyPeriodType::fortnight:
      return weeks(date.startOfFortnight(firstDayOfWeek, {}, timeZone), 14);
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

bool TaskFrequencyPeriod::isCurrentPeriod(HHMMSS startOfDay, TimeZone timeZone, Date now) const {
  return contains(YYYYMMDD::today(startOfDay, timeZone, now));
}

std::int64_t TaskFrequencyPeriod::numberOfDays(const CountedIn& timeZone) const {
  return startDate.distance(finishDate, true, timeZone);
}

std::int64_t TaskFrequencyPeriod::remainingDays(YYYYMMDD from, bool includeThisDay,
                                                const CountedIn& timeZone) const {
  if (startsAfter(from)) return numberOfDays(timeZone);
  if (endsBefore(from)) return 0;
  return from.distance(finishDate, includeThisDay, timeZone);
}

TaskFrequencyPeriod TaskFrequencyPeriod::next(const CountedIn& timeZone) const {
  return fromDate(periodType, finishDate.nextDay(timeZone), firstDayOfWeek, timeZone);
}

TaskFrequencyPeriod TaskFrequencyPeriod::previous(const CountedIn& timeZone) const {
  return fromDate(periodType, startDate.previousDay(timeZone), firstDayOfWeek, timeZone);
}

TaskFrequencyPeriod TaskFrequencyPeriod::add(std::int64_t numPeriods,
                                             const CountedIn& timeZone) const {
  TaskFrequencyPeriod period = *this;
  for (; numPeriods > 0; --numPeriods) period = period.next(timeZone);
  for (; numPeriods < 0; ++numPeriods) period = period.previous(timeZone);
  return period;
}

DatedPeriod TaskFrequencyPeriod::latestPossibleDatedPeriod(HHMMSS startOfDay, TimeZone timeZone,
                                                           Date now) const {
  const YYYYMMDD today = YYYYMMDD::today(startOfDay, timeZone, now);
  const YYYYMMDD date = endsBefore(today) ? finishDate : std::max(today, startDate);
  return {.date = date, .period = *this};
}

std::int64_t TaskFrequencyPeriod::numberOfDaysInStartingMonth() const {
  return startDate.distance(std::min(finishDate, startDate.yyyymm().lastDay()), true, {});
}

std::int64_t TaskFrequencyPeriod::numberOfDaysInFinishMonth() const {
  return std::max(startDate, finishDate.yyyymm().firstDay()).distance(finishDate, true, {});
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
