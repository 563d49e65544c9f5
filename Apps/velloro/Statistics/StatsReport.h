#pragma once

#include "VelloroCharts/TrophyRoomTaskStats.h"

#include <optional>
#include <string>
#include <vector>

namespace velloro {

class TaskEntity;
struct OxCodableColor;
struct TaskSnapshot;

/// Of which time statistics are wanted, and how finely cut.
struct StatsRequest {
  TaskChartsTimePeriod timePeriod = {};
  std::int64_t maxNumPoints = TrophyRoomTaskStats::defaultMaxNumPoints;
};

/// What a task's log adds up to, by reading it.
[[nodiscard]] TaskLogTally tallyOf(const TaskSnapshot& task,
                                   const TaskChartsTimePeriod& timePeriod);
/// The statistics of a task of the store, read at an instant.
[[nodiscard]] TrophyRoomTaskStats statsOf(const TaskSnapshot& task, const StatsRequest& request);
/// Whether a task is counted among all of them: it is in view, and its log is the user's own.
[[nodiscard]] bool isCountedWithOthers(const TaskSnapshot& task);

/// As `velloro stats` prints them: counts, a line of what went well over time, and bars by weekday
/// and hour.
[[nodiscard]] std::string textOf(const TrophyRoomTaskStats& stats, const std::string& title,
                                 const std::optional<OxCodableColor>& color, Date now);
[[nodiscard]] std::string textOf(const GlobalChartData& data);

}  // namespace velloro
