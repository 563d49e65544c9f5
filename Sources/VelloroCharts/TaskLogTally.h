#pragma once

#include "VelloroCharts/TaskChartsTimePeriod.h"
#include "VelloroCore/Log/TaskLogWalk.h"

#include <array>
#include <cstdint>
#include <vector>

namespace velloro {

/// What a task's log adds up to, by day, weekday and hour: the one walk from which all statistics
/// are made.
///
/// Each period of the task counts once, by the full entry that decides it: as completed or as
/// missed. A skip, an allowed miss and a period without a full entry, such as an open one, count
/// nowhere. A period counts on the day of its entry, also where it is longer than a day, and in the
/// hour at which the entry was made, by the clock of the zone that it was made in. Days that are
/// yet to come don't count.
///
///     // From the newest row: completed, skipped, completed, missed, completed
///     const auto tally = TaskLogTally::fromLog(rows, rules, TaskChartsTimePeriod::allTime());
///     tally.all.completed;       // 3
///     tally.all.missed;          // 1
///     tally.days.size();         // 4
struct TaskLogTally {
  struct Counts {
    std::int64_t completed = 0;
    std::int64_t missed = 0;

    bool operator==(const Counts&) const = default;
    [[nodiscard]] std::int64_t entries() const { return completed + missed; }
    /// The completed ones of all entries, 0 to 1; 0 without any.
    [[nodiscard]] double share() const {
      return entries() == 0 ? 0 : static_cast<double>(completed) / static_cast<double>(entries());
    }
    void add(bool isCompleted) { ++(isCompleted ? completed : missed); }
  };
  struct Day : Counts {
    YYYYMMDD day;
  };

  Counts all;
  std::vector<Day> days;  ///< Those with an entry, the oldest first.
  std::array<Counts, 24> hours;
  std::array<Counts, 7> daysOfWeek;  ///< By `DayOfWeek`.
  /// The period of today has no full entry yet, and so is in none of the counts.
  bool isTodayOpen = true;

  /// The days whose rows decide about a stretch of time: those of all periods with a day in it, and
  /// those of today's.
  [[nodiscard]] static YYYYMMDD::Range dates(const TaskLogRules& rules,
                                             const TaskChartsTimePeriod& timePeriod);
  [[nodiscard]] static TaskLogTally fromLog(TaskLogRows rows, const TaskLogRules& rules,
                                            const TaskChartsTimePeriod& timePeriod);

 private:
  void add(const TaskLogRow& row, YYYYMMDD date, bool isCompleted, const TaskLogRules& rules);
  void sortDays();
};

}  // namespace velloro
