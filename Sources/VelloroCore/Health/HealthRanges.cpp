#include "VelloroCore/Health/HealthRanges.h"

#include <algorithm>

namespace velloro {
namespace {

template <typename Joins>
std::vector<DateRange> joined(std::vector<DateRange> ranges, Joins joins) {
  std::ranges::sort(ranges);
  std::vector<DateRange> apart;
  for (const DateRange& range : ranges) {
    if (!apart.empty() && joins(range.start.timeIntervalSince(apart.back().end))) {
      apart.back().end = std::max(apart.back().end, range.end);
    } else {
      apart.push_back(range);
    }
  }
  return apart;
}

}  // namespace

std::optional<DateRange> DateRange::from(Date start, Date end) {
  return start <= end ? std::optional(DateRange{start, end}) : std::nullopt;
}

std::vector<DateRange> withoutOverlap(std::vector<DateRange> ranges) {
  return joined(std::move(ranges), [](double gap) { return gap < 0; });
}

double totalDuration(std::vector<DateRange> ranges) {
  double total = 0;
  for (const DateRange& range : withoutOverlap(std::move(ranges))) total += range.duration();
  return total;
}

std::vector<DateRange> normalizedSegments(std::vector<DateRange> ranges, double tolerance) {
  return joined(std::move(ranges), [&](double gap) { return gap < tolerance; });
}

}  // namespace velloro
