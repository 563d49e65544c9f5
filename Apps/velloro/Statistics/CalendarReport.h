#pragma once

#include "VelloroCharts/TaskCalendarMonth.h"

#include <optional>
#include <string>
#include <vector>

namespace velloro {

struct TaskSnapshot;

/// A month of a task, as `velloro calendar` prints it.
struct CalendarReport {
  TaskCalendarMonth month;
  std::vector<SnapshotPeriod> sortedPeriods;
  std::vector<WeekSummary> weeks;
  std::optional<TaskCalendarPeriodInfo> fullItem;

  static constexpr auto codingKeys = keys(
      key("month", &CalendarReport::month), key("sortedPeriods", &CalendarReport::sortedPeriods),
      key("weeks", &CalendarReport::weeks), key("fullItem", &CalendarReport::fullItem));

  [[nodiscard]] static CalendarReport of(const TaskSnapshot& task, YYYYMM month);

  /// A grid of the days, each with the sign of its period.
  [[nodiscard]] std::string text() const;
};

/// Several months, as many beside each other as fit into lines of so many characters, four at most.
[[nodiscard]] std::string textOf(const std::vector<CalendarReport>& months, std::size_t columns);

}  // namespace velloro
