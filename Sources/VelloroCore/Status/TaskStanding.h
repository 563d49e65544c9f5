#pragma once

#include "OxKit/FunctionRef.h"
#include "VelloroCore/Log/TaskLogWalk.h"
#include "VelloroCore/Status/StreakRecord.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <optional>

namespace velloro {

/// What is kept of a task's log; a stored task's row has it.
struct TaskTemporalData {
  StreakRecord streak = {};
  // The days of the newest completion, miss and skip; an allowed miss counts as a skip.
  std::optional<YYYYMMDD> lastCompleted = {};
  std::optional<YYYYMMDD> lastMissed = {};
  std::optional<YYYYMMDD> lastSkipped = {};
  double progress = 0;  ///< In the unit of the task's target, else completions.
  std::optional<YYYYMMDD> progressDate = {};  ///< A day of the period of which `progress` tells.

  bool operator==(const TaskTemporalData&) const = default;
};

/// A timer that is running for a task.
struct RunningTimer {
  TaskFrequencyPeriod period;  ///< For which its time counts.
  TimeInterval duration = 0;   ///< Seconds that it has run.
};

/// The state of a task, by the values derived from its log. There are none for periods other than
/// the current one: they show as open or, for a negative task, as clean.
///
///     const TaskStanding task{.temporal = {.streak = StreakRecord(4, 9)}, .now = now};
///     const auto status = task.streakedCompletionStatus(
///         task.currentPeriod().period,
///         [](const auto&) { return SkipMode::willMissWithIndicator; });
///     status.streak.current;    // 4: of a negative task without an entry today, 5
struct TaskStanding {
  TaskFrequency frequency = {};
  HHMMSS startOfDay = HHMMSS::midnight;
  DayOfWeek firstDayOfWeek = DayOfWeek::sunday;
  TimeZone timeZone = TimeZone::gmt();
  bool isNegative = false;
  std::optional<AutomaticTaskType> automaticTaskType = {};
  double typeTarget = 0;  ///< In the automatic type's unit.
  TaskTemporalData temporal = {};
  std::optional<RunningTimer> runningTimer = {};
  Date now;

  /// What a period turns into if it ends as it stands; asked for open and clean periods alone,
  /// since the answer may have to be read from the log.
  using WillSkip = FunctionRef<SkipMode(const TaskFrequencyPeriod&)>;

  /// By what its log is read.
  [[nodiscard]] TaskLogRules rules() const {
    return {.frequency = frequency,
            .startOfDay = startOfDay,
            .firstDayOfWeek = firstDayOfWeek,
            .timeZone = timeZone,
            .isNegative = isNegative,
            .now = now};
  }
  [[nodiscard]] YYYYMMDD today() const { return YYYYMMDD::today(startOfDay, timeZone, now); }
  [[nodiscard]] DatedPeriod currentPeriod() const {
    return frequency.currentPeriod(startOfDay, firstDayOfWeek, timeZone, now);
  }
  [[nodiscard]] TaskProgress progress(const TaskFrequencyPeriod& period) const;
  [[nodiscard]] CompletionStatus completionStatus(const TaskFrequencyPeriod& period,
                                                  WillSkip willSkip) const;
  /// The run; that of a negative task with today's period, unless an entry says otherwise: it
  /// counts when it has ended clean, and nobody writes an entry for that.
  [[nodiscard]] StreakRecord streak() const;
  /// In a period to come the run is what the current period makes of it if that ends as it stands.
  [[nodiscard]] StreakedCompletionStatus streakedCompletionStatus(const TaskFrequencyPeriod& period,
                                                                  WillSkip willSkip) const;

 private:
  /// By the days alone: where fortnights overlap, the day's own one may be another.
  [[nodiscard]] bool isIn(const std::optional<YYYYMMDD>& day,
                          const TaskFrequencyPeriod& period) const {
    return day && period.contains(*day);
  }
  [[nodiscard]] bool isSettled(const TaskFrequencyPeriod& current) const;
  [[nodiscard]] TaskProgressTimer timerProgress(const DatedPeriod& dated, double value) const;
};

}  // namespace velloro
