#pragma once

#include "Foundation/Coding/Coding.h"
#include "Foundation/Time/TimeZone.h"
#include "VelloroCharts/LineGraph.h"
#include "VelloroCharts/TaskChartsTimePeriod.h"
#include "VelloroCharts/TaskLogTally.h"
#include "VelloroCore/Frequency/TaskFrequencyPeriodType.h"

#include <cstdint>
#include <span>
#include <vector>

namespace platform {
class Locale;
}

namespace velloro {

/// How well a task went over a stretch of time: a list of shares from 0 to 1, each of a span of
/// days, of a month, or of a day.
struct AllTimeChart {
  TaskChartsTimePeriod timePeriod;
  HHMMSS startOfDay = HHMMSS::midnight;
  TimeZone timeZone = TimeZone::gmt();
  YYYYMMDD earliestDate;             ///< The first day with data.
  YYYYMMDD latestDate;               ///< The last day that is covered.
  bool statsAccountForToday = true;  ///< Today is in the figures.
  TaskFrequencyPeriodType measurementDuration = TaskFrequencyPeriodType::day;
  std::vector<double> data = {};

  /// Of all time, with both days today.
  [[nodiscard]] static AllTimeChart empty(HHMMSS startOfDay, TimeZone timeZone, Date now);

  bool operator==(const AllTimeChart&) const = default;
  static constexpr auto codingKeys =
      keys(key("timePeriod", &AllTimeChart::timePeriod, initialWhenUnknown),
           key("startOfDay", &AllTimeChart::startOfDay, initialWhenUnknown),
           key("timeZone", &AllTimeChart::timeZone, initialWhenUnknown),
           key("earliestDate", &AllTimeChart::earliestDate),
           key("latestDate", &AllTimeChart::latestDate),
           key("statsAccountForToday", &AllTimeChart::statsAccountForToday),
           key("measurementDuration", &AllTimeChart::measurementDuration, initialWhenUnknown),
           key("data", &AllTimeChart::data));

  struct DataPointsRequest {
    const TaskChartsTimePeriod& timePeriod;
    YYYYMMDD earliestDate;
    YYYYMMDD latestDate;
    std::span<const TaskLogTally::Day> days;  ///< The oldest first.
    std::int64_t maxNumPoints = 1;            ///< Of all time; below 1 counts as 1.
  };
  /// The shares of completed entries. All time is cut into spans of as many days as make no more
  /// than `maxNumPoints`, of which those without entries are left out. A year has one for each
  /// month, whole, and a month one for each day, from the first date to the last; without entries
  /// they are 0.
  ///
  ///     // From the newest row: completed, skipped, completed, missed, completed
  ///     const auto time = TaskChartsTimePeriod::allTime();
  ///     const auto tally = TaskLogTally::fromLog(rows, rules, time);
  ///     AllTimeChart::createDataPoints({time, {2024, 3, 3}, {2024, 3, 7}, tally.days, 3});
  ///     // {0.5, 1, 1}: spans of two days
  [[nodiscard]] static std::vector<double> createDataPoints(const DataPointsRequest& request);

  /// The points of a graph; of an empty chart two at 0.
  [[nodiscard]] std::vector<LineGraphDataPoint> dataPoints(const Locale& locale) const;
  /// The days, counted as in the calendar, of which the chart tells.
  [[nodiscard]] std::int64_t displayNumberOfPeriods(Date now) const;
  // The texts below the graph, where there is space, and where there is less and less of it.
  [[nodiscard]] SummaryLabels labels(const Locale& locale, Date now) const;
  [[nodiscard]] SummaryLabels briefLabels(const Locale& locale, Date now) const;
  [[nodiscard]] SummaryLabels veryBriefLabels(const Locale& locale, Date now) const;

 private:
  [[nodiscard]] std::string startText(const Locale& locale) const;
  [[nodiscard]] std::string endText(const Locale& locale, YYYYMMDD today) const;
};

}  // namespace velloro
