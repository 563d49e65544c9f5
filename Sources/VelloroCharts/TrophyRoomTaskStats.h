#pragma once

#include "VelloroCharts/AllTimeChart.h"
#include "VelloroCore/Status/StreakRecord.h"

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

namespace velloro {

/// A map by weekday, written as an object whose keys are the raw numbers, 0 for Sunday.
template <typename Value>
struct ByDayOfWeek : std::map<DayOfWeek, Value> {
  using std::map<DayOfWeek, Value>::map;
  using Numbered = std::map<std::int64_t, Value>;

  void encode(Encoder& to) const {
    Numbered numbered;
    for (const auto& [day, value] : *this) numbered.emplace(rawValue(day), value);
    to.encode(numbered);
  }
  /// A key that is no weekday is left out.
  [[nodiscard]] static ByDayOfWeek decode(const Decoder& from) {
    ByDayOfWeek map;
    for (const auto& [number, value] : from.decode<Numbered>()) {
      if (const auto day = fromRawValue<DayOfWeek>(number)) map.emplace(*day, value);
    }
    return map;
  }
};

/// How well a task goes on each day of the week: shares from 0 to 1.
struct DaysOfWeekChart {
  /// `percentage` is the share of the largest value.
  struct Value {
    DayOfWeek dayOfWeek = DayOfWeek::sunday;
    double value = 0;
    double percentage = 0;

    bool operator==(const Value&) const = default;
  };

  ByDayOfWeek<double> values = {};

  bool operator==(const DaysOfWeekChart&) const = default;
  static constexpr auto codingKeys = keys(key("values", &DaysOfWeekChart::values));

  /// All seven days in the order of the week; one without a value has 0.
  [[nodiscard]] std::array<Value, 7> sortedValues(DayOfWeek firstDayOfWeek) const;
  [[nodiscard]] std::string accessibilityLabel(DayOfWeek firstDayOfWeek,
                                               const Locale& locale) const;
};

/// How well a task goes by the hour, 0 to 23, at which an entry was made: shares from 0 to 1.
struct TimeOfDayChart {
  std::map<std::int64_t, double> values = {};

  bool operator==(const TimeOfDayChart&) const = default;
  static constexpr auto codingKeys = keys(key("values", &TimeOfDayChart::values));

  /// One for each hour of the day; 0 without a value.
  [[nodiscard]] std::vector<LineGraphDataPoint> dataPoints(const Locale& locale) const;
};

/// The counts of several tasks together. What counts is said in `TaskLogTally`.
struct GlobalChartData {
  using Counts = std::map<std::int64_t, std::int64_t>;

  std::int64_t globalNumNonSkippedEntries = 0;
  std::int64_t globalTotalCompleted = 0;
  std::int64_t globalTotalMissed = 0;
  // By hour, 0 to 23, and by `YYYYMMDD::intValue`.
  Counts globalCompletionsByHour = {};
  Counts globalMissesByHour = {};
  Counts globalCompletedByDay = {};
  Counts globalNumEntriesByDay = {};
  ByDayOfWeek<std::int64_t> globalCompletionsByDayOfWeek = {};
  ByDayOfWeek<std::int64_t> globalMissesByDayOfWeek = {};

  void add(const TaskLogTally& tally);

  bool operator==(const GlobalChartData&) const = default;
  static constexpr auto codingKeys = [] {
    using G = GlobalChartData;
    return keys(key("globalNumNonSkippedEntries", &G::globalNumNonSkippedEntries),
                key("globalTotalCompleted", &G::globalTotalCompleted),
                key("globalTotalMissed", &G::globalTotalMissed),
                key("globalCompletionsByHour", &G::globalCompletionsByHour),
                key("globalMissesByHour", &G::globalMissesByHour),
                key("globalCompletedByDay", &G::globalCompletedByDay),
                key("globalNumEntriesByDay", &G::globalNumEntriesByDay),
                key("globalCompletionsByDayOfWeek", &G::globalCompletionsByDayOfWeek),
                key("globalMissesByDayOfWeek", &G::globalMissesByDayOfWeek));
  }();
};

/// The statistics of a task, ready to be shown.
///
///     const auto stats = TrophyRoomTaskStats::fromLog(
///         rows, {.rules = rules, .timePeriod = TaskChartsTimePeriod::allTime()});
///     stats.numCompletions;                                   // 3
///     stats.pct;                                              // 0.75
///     stats.daysOfWeekChart.values.at(DayOfWeek::monday);     // 0: missed on 2024-03-04
struct TrophyRoomTaskStats {
  enum class Direction : std::uint8_t { positive, negative };
  using GlobalChartData = velloro::GlobalChartData;

  TaskChartsTimePeriod timePeriod;
  Direction direction = Direction::positive;
  DayOfWeek firstDayOfWeek = DayOfWeek::sunday;
  StreakRecord streak = {};
  double pct = 0;  ///< Completed ones of those completed or missed, 0 to 1.
  std::int64_t numCompletions = 0;
  std::int64_t numMisses = 0;
  AllTimeChart allTimeChart = {};
  DaysOfWeekChart daysOfWeekChart = {};
  TimeOfDayChart timeOfDayChart = {};
  bool isMilestone = false;  ///< The current run stands exactly on a milestone.
  bool isIncludedInGlobalStats = false;

  bool operator==(const TrophyRoomTaskStats&) const = default;
  static constexpr auto codingKeys = [] {
    using S = TrophyRoomTaskStats;
    return keys(key("timePeriod", &S::timePeriod, initialWhenUnknown),
                key("direction", &S::direction, initialWhenUnknown),
                key("firstDayOfWeek", &S::firstDayOfWeek, initialWhenUnknown),
                key("streak", &S::streak), key("pct", &S::pct),
                key("numCompletions", &S::numCompletions), key("numMisses", &S::numMisses),
                key("allTimeChart", &S::allTimeChart), key("daysOfWeekChart", &S::daysOfWeekChart),
                key("timeOfDayChart", &S::timeOfDayChart), key("isMilestone", &S::isMilestone),
                key("isIncludedInGlobalStats", &S::isIncludedInGlobalStats));
  }();

  static constexpr std::int64_t defaultMaxNumPoints = 30;

  struct Question {
    const TaskLogRules& rules;
    TaskChartsTimePeriod timePeriod = {};
    StreakRecord streak = {};
    bool isIncludedInGlobalStats = true;
    std::int64_t maxNumPoints = defaultMaxNumPoints;  ///< Of the chart of all time.
  };
  /// What counts is said in `TaskLogTally`, and there which rows are needed. The chart begins with
  /// the first day that counts, and ends with today or with the stretch of time, whichever comes
  /// first; where nothing counts it has today alone, and no data.
  [[nodiscard]] static TrophyRoomTaskStats fromLog(TaskLogRows rows, const Question& question);
  /// The same from what the log adds up to.
  [[nodiscard]] static TrophyRoomTaskStats fromTally(const TaskLogTally& tally,
                                                     const Question& question);
};

constexpr auto rawValues(std::type_identity<TrophyRoomTaskStats::Direction>) {
  return caseNames<TrophyRoomTaskStats::Direction::negative>();
}

}  // namespace velloro
