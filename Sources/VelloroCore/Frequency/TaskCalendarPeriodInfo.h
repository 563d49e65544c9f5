#pragma once

#include "VelloroCore/Frequency/TaskFrequencyPeriod.h"

#include <cstdint>
#include <string_view>
#include <type_traits>
#include <vector>

namespace velloro {

/// How a period shows in a calendar.
enum class TaskCalendarPeriodStatus : std::uint8_t {
  completed,
  missed,
  skipped,
  allowedMiss,
  current,  ///< Open.
  currentCompleted,
  currentMissed,
  currentAllowedMiss,
  future,
  past,  ///< Before the task was made.
};

struct TaskCalendarPeriodStatusRow {
  TaskCalendarPeriodStatus value;
  std::string_view raw;
  bool isCompleted;
};

inline constexpr TaskCalendarPeriodStatusRow taskCalendarPeriodStatusRows[] = {
    {TaskCalendarPeriodStatus::completed, "c", true},
    {TaskCalendarPeriodStatus::missed, "m", false},
    {TaskCalendarPeriodStatus::skipped, "s", false},
    {TaskCalendarPeriodStatus::allowedMiss, "a", false},
    {TaskCalendarPeriodStatus::current, "cp", false},
    {TaskCalendarPeriodStatus::currentCompleted, "cc", true},
    {TaskCalendarPeriodStatus::currentMissed, "cm", false},
    {TaskCalendarPeriodStatus::currentAllowedMiss, "ca", false},
    {TaskCalendarPeriodStatus::future, "f", false},
    {TaskCalendarPeriodStatus::past, "p", false},
};

constexpr auto rawValues(std::type_identity<TaskCalendarPeriodStatus>) {
  return rawColumn(taskCalendarPeriodStatusRows);
}

[[nodiscard]] constexpr bool isCompleted(TaskCalendarPeriodStatus status) {
  return rowOf(taskCalendarPeriodStatusRows, status).isCompleted;
}

/// A period of a task and how it shows.
struct TaskCalendarPeriodInfo {
  TaskFrequencyPeriod period;
  TaskCalendarPeriodStatus status = TaskCalendarPeriodStatus::past;

  bool operator==(const TaskCalendarPeriodInfo&) const = default;
  static constexpr auto codingKeys = keys(key("period", &TaskCalendarPeriodInfo::period),
                                          key("status", &TaskCalendarPeriodInfo::status));
};

// By the order of their periods.
[[nodiscard]] std::vector<TaskCalendarPeriodInfo> sortedOldestToNewest(
    std::vector<TaskCalendarPeriodInfo> periods);
[[nodiscard]] std::vector<TaskCalendarPeriodInfo> sortedNewestToOldest(
    std::vector<TaskCalendarPeriodInfo> periods);

}  // namespace velloro
