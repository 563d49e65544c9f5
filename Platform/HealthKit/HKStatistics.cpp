#include "HealthKit/HKStatistics.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <tuple>

namespace platform {

Date HKStatisticsInterval::boundary(Date anchor, std::int64_t intervals) const {
  const Calendar calendar(timeZone);
  if (unit == Unit::day) return calendar.dateByAddingDays(intervals, anchor).value_or(anchor);
  DateComponents parts = calendar.dateComponents(anchor);
  auto& part = unit == Unit::month ? parts.month : parts.year;
  part = part.value_or(1) + intervals;
  return calendar.date(parts).value_or(anchor);
}

std::int64_t HKStatisticsInterval::indexOf(Date anchor, Date date) const {
  constexpr double day = 86400;
  const double lengths[] = {day, 30.4 * day, 365.2 * day};
  const double length = lengths[static_cast<std::size_t>(unit)];
  auto index = static_cast<std::int64_t>(std::floor(date.timeIntervalSince(anchor) / length));
  while (boundary(anchor, index) > date) --index;
  while (boundary(anchor, index + 1) <= date) ++index;
  return index;
}

namespace {

using Range = std::pair<Date, Date>;

/// How much of a range other ranges leave, which are in order and apart.
double uncovered(const Range& range, const std::vector<Range>& covered) {
  double left = range.second.timeIntervalSince(range.first);
  auto one = std::ranges::upper_bound(covered, range.first, {}, &Range::second);
  for (; one != covered.end() && one->first < range.second; ++one) {
    left -=
        std::min(one->second, range.second).timeIntervalSince(std::max(one->first, range.first));
  }
  return std::max(left, 0.0);
}

std::vector<Range> joined(std::vector<Range> ranges) {
  std::ranges::sort(ranges);
  std::vector<Range> apart;
  for (const Range& range : ranges) {
    if (!apart.empty() && range.first <= apart.back().second) {
      apart.back().second = std::max(apart.back().second, range.second);
    } else {
      apart.push_back(range);
    }
  }
  return apart;
}

double share(const HKMeasured& sample, Date from, Date to, const std::vector<Range>& covered) {
  if (sample.start == sample.end) {
    return from <= sample.start && sample.start < to ? sample.value : 0;
  }
  const Range within(std::max(sample.start, from), std::min(sample.end, to));
  if (within.first >= within.second) return 0;
  const double left = uncovered(within, covered);
  const double whole = sample.end.timeIntervalSince(sample.start);
  return left == whole ? sample.value : sample.value * (left / whole);
}

}  // namespace

double sumOnce(std::vector<HKMeasured> samples, Date from, Date to) {
  std::ranges::stable_sort(samples, {}, [](const HKMeasured& sample) {
    return std::tuple(sample.rank, sample.start, sample.end);
  });
  double sum = 0;
  std::vector<Range> covered;
  for (auto first = samples.begin(); first != samples.end();) {
    const auto last = std::find_if(first, samples.end(),
                                   [&](const auto& one) { return one.rank != first->rank; });
    for (auto one = first; one != last; ++one) sum += share(*one, from, to, covered);
    if (last != samples.end()) {
      for (auto one = first; one != last; ++one) {
        if (one->start < one->end) covered.emplace_back(one->start, one->end);
      }
      covered = joined(std::move(covered));
    }
    first = last;
  }
  return sum;
}

void HKStatisticsCollection::enumerateStatistics(
    Date from, Date to, const std::function<void(const HKStatistics&)>& block) const {
  for (const HKStatistics& one : statistics) {
    if (one.startDate < to && from < one.endDate) block(one);
  }
}

HKQuantity HKStatisticsCollection::sumQuantity(Date from, Date to, const HKUnit& unit) const {
  double sum = 0;
  enumerateStatistics(from, to, [&](const HKStatistics& one) {
    if (one.sumQuantity) sum += one.sumQuantity->doubleValueForUnit(unit).value_or(0);
  });
  return HKQuantity::quantityWithUnit(unit, sum);
}

std::optional<double> HKStatisticsCollection::averageQuantity(Date from, Date to,
                                                              const HKUnit& unit) const {
  double sum = 0;
  double count = 0;
  enumerateStatistics(from, to, [&](const HKStatistics& one) {
    const auto value =
        one.averageQuantity ? one.averageQuantity->doubleValueForUnit(unit) : std::nullopt;
    sum += value.value_or(0);
    count += value ? 1 : 0;
  });
  return count > 0 ? std::optional(sum / count) : std::nullopt;
}

}  // namespace platform
