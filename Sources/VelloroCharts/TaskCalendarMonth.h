#pragma once

#include "VelloroCore/Frequency/TaskCalendarPeriodInfo.h"
#include "VelloroCore/Frequency/TaskFrequency.h"
#include "VelloroCore/Log/TaskRecentHistory.h"

#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

namespace velloro {

/// A month, drawn as weeks that begin on a weekday.
struct TaskCalendarMonth {
  YYYYMM month;
  DayOfWeek firstDayOfWeek = DayOfWeek::sunday;

  bool operator==(const TaskCalendarMonth&) const = default;
  static constexpr auto codingKeys = keys(key("month", &TaskCalendarMonth::month),
                                          key("firstDayOfWeek", &TaskCalendarMonth::firstDayOfWeek,
                                              whenUnknown(&firstDayOfWeekStandIn)));
};

/// One period in a month.
struct SnapshotPeriod {
  TaskCalendarPeriodInfo period;

  bool operator==(const SnapshotPeriod&) const = default;
  static constexpr auto codingKeys = keys(key("period", &SnapshotPeriod::period));

  /// The days of the period that lie in the month; absent for a period that is all of it.
  [[nodiscard]] std::optional<std::int64_t> numDaysInWeek(YYYYMM month) const;
};

/// What stands in a row of a month.
struct WeekSummary {
  /// A day of the months beside it, or a period with a day in this row.
  struct PeriodType {
    struct PreviousMonth {
      YYYYMMDD day;
      bool operator==(const PreviousMonth&) const = default;
      static constexpr auto codingValue = &PreviousMonth::day;
    };
    struct NextMonth {
      YYYYMMDD day;
      bool operator==(const NextMonth&) const = default;
      static constexpr auto codingValue = &NextMonth::day;
    };
    std::variant<PreviousMonth, NextMonth, SnapshotPeriod> value;

    bool operator==(const PeriodType&) const = default;
    static constexpr auto codingCases =
        cases(&PeriodType::value, keyed("previousMonth"), keyed("nextMonth"), keyed("period"));
  };

  std::vector<PeriodType> periods;

  bool operator==(const WeekSummary&) const = default;
  static constexpr auto codingKeys = keys(key("periods", &WeekSummary::periods));
};

/// The periods of a task in a month, for a calendar that is drawn without the task.
///
///     const auto history = TaskRecentHistory::fromLog(
///         rows, {.rules = rules, .to = {2024, 3, 7}, .createdDay = {2024, 3, 3}});
///     const auto month = TaskCalendarMonthSnapshot::of(
///         {.history = history, .month = {2024, 3}, .frequency = rules.frequency,
///          .today = {2024, 3, 7}, .firstDayOfWeek = DayOfWeek::monday});
///     month.sortedPeriods.size();              // 31
///     month.weeks().size();                    // 5
///     month.weeks().front().periods.size();    // 7: four days of February, and three of March
struct TaskCalendarMonthSnapshot {
  TaskCalendarMonth month;
  std::vector<SnapshotPeriod> sortedPeriods;  ///< The oldest first.

  bool operator==(const TaskCalendarMonthSnapshot&) const = default;
  static constexpr auto codingKeys =
      keys(key("month", &TaskCalendarMonthSnapshot::month),
           key("sortedPeriods", &TaskCalendarMonthSnapshot::sortedPeriods));

  struct Question {
    const TaskRecentHistory& history;
    YYYYMM month;
    const TaskFrequency& frequency;
    YYYYMMDD today;
    DayOfWeek firstDayOfWeek = DayOfWeek::sunday;
    CountedIn timeZone = {};
  };
  /// A period that the history does not have shows as current, as future or as past.
  [[nodiscard]] static TaskCalendarMonthSnapshot of(const Question& question);

  /// The one period that is the month; absent for others.
  [[nodiscard]] std::optional<TaskCalendarPeriodInfo> fullItem() const;
  /// The rows of the month. A period of several days stands once in each row that it touches.
  [[nodiscard]] std::vector<WeekSummary> weeks() const;

 private:
  void add(YYYYMMDD day, WeekSummary& week) const;
};

}  // namespace velloro
