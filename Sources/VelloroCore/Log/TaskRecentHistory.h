#pragma once

#include "OxDateTime/StandIns.h"
#include "VelloroCore/Frequency/TaskCalendarPeriodInfo.h"
#include "VelloroCore/Log/PreviousDaysSuccess.h"

#include <map>
#include <optional>
#include <vector>

namespace velloro {

/// What a calendar of a task shows: the status of each period of a stretch of time, and two success
/// rates.
///
///     const auto history = TaskRecentHistory::fromLog(
///         rows, {.rules = rules, .to = {2024, 3, 31}, .createdDay = {2024, 3, 3}});
///     history.single.at({2024, 3, 5});    // TaskCalendarPeriodStatus::completed
struct TaskRecentHistory {
  DayOfWeek firstDayOfWeek = DayOfWeek::sunday;
  /// The periods of one day; there are hundreds of them.
  std::map<YYYYMMDD, TaskCalendarPeriodStatus> single = {};
  std::vector<TaskCalendarPeriodInfo> multi = {};  ///< The others.
  PreviousDaysSuccess shortTerm = PreviousDaysSuccess::defaultShortTerm;
  PreviousDaysSuccess longTerm = PreviousDaysSuccess::defaultLongTerm;

  TaskRecentHistory() = default;
  TaskRecentHistory(DayOfWeek firstDayOfWeek, const std::vector<TaskCalendarPeriodInfo>& periods,
                    const PreviousDaysSuccess& shortTerm, const PreviousDaysSuccess& longTerm);
  /// No periods, and rates without samples.
  [[nodiscard]] static TaskRecentHistory defaultResult(DayOfWeek firstDayOfWeek);

  bool operator==(const TaskRecentHistory&) const = default;
  static constexpr auto codingKeys =
      keys(key("firstDayOfWeek", &TaskRecentHistory::firstDayOfWeek,
               whenUnknown(&firstDayOfWeekStandIn)),
           key("single", &TaskRecentHistory::single), key("multi", &TaskRecentHistory::multi),
           key("shortTerm", &TaskRecentHistory::shortTerm, initialWhenUnknown),
           key("longTerm", &TaskRecentHistory::longTerm, initialWhenUnknown));

  /// All periods, in no order.
  [[nodiscard]] std::vector<TaskCalendarPeriodInfo> unsortedPeriods() const;
  /// Those with a day in the month.
  [[nodiscard]] std::vector<TaskCalendarPeriodInfo> unsortedPeriods(YYYYMM month) const;

  struct Question {
    const TaskLogRules& rules;
    /// The first day; absent for that of the oldest entry.
    std::optional<YYYYMMDD> from = {};
    YYYYMMDD to;  ///< The last day. What lies behind today shows as future, and no entry counts.
    YYYYMMDD createdDay;
    std::optional<YYYYMMDD> lastCompleted = {};  ///< See `PreviousDaysSuccess::Question`.

    /// The days that the rows must cover.
    [[nodiscard]] YYYYMMDD::Range dates() const;

   private:
    friend TaskRecentHistory;
    [[nodiscard]] YYYYMMDD ref() const;
    [[nodiscard]] PreviousDaysSuccess::Question rates() const;
  };
  /// A period behind the task's first day that has no entry shows as skipped; so does an allowed
  /// miss that is over.
  [[nodiscard]] static TaskRecentHistory fromLog(TaskLogRows rows, const Question& question);

 private:
  [[nodiscard]] TaskCalendarPeriodInfo dayInfo(YYYYMMDD day, TaskCalendarPeriodStatus status) const;
};

}  // namespace velloro
