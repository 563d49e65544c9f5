#pragma once

#include "VelloroCore/Log/TaskLogWalk.h"
#include "VelloroCore/Status/StreakRecord.h"

#include <cstdint>
#include <optional>
#include <utility>

namespace velloro {

/// The entry that decides a period: its type, its day, and the time of day at which it was made.
struct CompletionByPeriod {
  TaskLogEntryType type = TaskLogEntryType::unknown;
  YYYYMMDD date;
  HHMMSS time;

  bool operator==(const CompletionByPeriod&) const = default;
};

/// What a task's log says as a whole.
///
///     // From the newest row: completed, skipped, completed, missed, completed
///     const auto summary = TaskLogSummary::fromLog(rows, {.rules = rules, .to = {2024, 3, 7}});
///     summary.streak.current;          // 2: a skip neither counts nor breaks
///     summary.lastMissed->first;       // 20240304
///
/// Each entry counts for the period of the present frequency that its day lies in, and each period
/// has the entry that `isFullEntryBefore` puts first. Completed periods make a run, and only a full
/// miss ends one: a period without an entry neither counts nor breaks.
struct TaskLogSummary {
  /// An entry's day, and the time of day at which it was made.
  using Moment = std::pair<YYYYMMDD, HHMMSS>;

  TaskFrequencyPeriod firstPeriod = {};
  TaskFrequencyPeriod lastPeriod = {};
  StreakRecord streak = {};
  // Of the newest period of each kind.
  std::optional<Moment> lastCompleted = {};
  std::optional<Moment> lastSkipped = {};
  std::optional<Moment> lastMissed = {};
  std::optional<Moment> lastAllowableMiss = {};
  /// Completions in the last period, full and partial; of a negative task, misses.
  std::int64_t numLastPeriodEntries = 0;

  bool operator==(const TaskLogSummary&) const = default;

  struct Question {
    const TaskLogRules& rules;
    std::optional<YYYYMMDD> from = {};  ///< Absent for the whole log.
    YYYYMMDD to;
    /// When the task was made, for the first period of an empty log.
    std::optional<Date> created = {};

    /// The days that the rows must cover: those of the periods of both ends.
    [[nodiscard]] YYYYMMDD::Range dates() const;
  };
  /// The one place where a run is computed from the log. Linear in the rows; of rows outside the
  /// question's dates nothing is read.
  [[nodiscard]] static TaskLogSummary fromLog(TaskLogRows rows, const Question& question);
};

/// The amount that the log has for a period: the total of its newest completion or stretch of a
/// timer, or, of a negative task, of its newest miss; absent when there is none.
[[nodiscard]] std::optional<double> amountInPeriod(TaskLogRows rows, const TaskLogRules& rules,
                                                   const TaskFrequencyPeriod& period);

/// The same for a task whose amount is read from health data, where entries made by hand stand in
/// until that is done: absent where `kept` is an amount that the period's entries never added up
/// to, and so was read.
[[nodiscard]] std::optional<double> enteredAmount(TaskLogRows rows, const TaskLogRules& rules,
                                                  const TaskFrequencyPeriod& period, double kept);

}  // namespace velloro
