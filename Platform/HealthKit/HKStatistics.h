#pragma once

#include "HealthKit/HKSample.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace platform {

enum class HKStatisticsOptions : std::uint8_t { discreteAverage = 2, cumulativeSum = 16 };

/// The length of an interval by the calendar of a zone.
struct HKStatisticsInterval {
  enum class Unit : std::uint8_t { day, month, year };

  Unit unit = Unit::day;
  TimeZone timeZone = TimeZone::gmt();

  /// The instant that many intervals after the anchor. One that begins on a day that a shorter
  /// month does not have begins on the first of the next.
  [[nodiscard]] Date boundary(Date anchor, std::int64_t intervals) const;
  /// The number of the interval that holds the instant.
  [[nodiscard]] std::int64_t indexOf(Date anchor, Date date) const;
};

/// An amount that was measured from start to end, and how much its source is trusted: the lowest
/// rank most.
struct HKMeasured {
  Date start, end;
  double value = 0;
  std::int64_t rank = 0;
};

/// What was measured from one instant to another, each moment counted once: of a sample that
/// sources of lower ranks cover in part, the share of the rest counts, as does the share that lies
/// within the time. The samples of one rank add up. A moment takes no time, so nothing covers it:
/// it counts from the beginning of the time on, but not at its end.
///
///     const Date now = Date::now();
///     const HKMeasured watch{now, now + 3600, 4000, 0};
///     const HKMeasured phone{now, now + 7200, 6000, 1};
///     sumOnce({watch, phone}, now, now + 86400);    // 7000
[[nodiscard]] double sumOnce(std::vector<HKMeasured> samples, Date from, Date to);

/// The samples of one interval.
struct HKStatistics {
  Date startDate, endDate;
  std::optional<HKQuantity> sumQuantity = {};
  std::optional<HKQuantity> averageQuantity = {};
};

/// The intervals that have samples, in order.
struct HKStatisticsCollection {
  std::vector<HKStatistics> statistics;

  /// Calls the block with each interval that overlaps the time.
  void enumerateStatistics(Date from, Date to,
                           const std::function<void(const HKStatistics&)>& block) const;
  /// The sum over the intervals that overlap the time; 0 of none.
  [[nodiscard]] HKQuantity sumQuantity(Date from, Date to, const HKUnit& unit) const;
  /// The mean of the intervals' averages; absent without any.
  [[nodiscard]] std::optional<double> averageQuantity(Date from, Date to, const HKUnit& unit) const;
};

}  // namespace platform
