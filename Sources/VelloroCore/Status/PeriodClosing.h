#pragma once

#include "OxKit/FunctionRef.h"
#include "OxKit/UniqueID.h"
#include "VelloroCore/Log/TaskLogWalk.h"
#include "VelloroCore/Status/TaskStanding.h"
#include "VelloroCore/Status/TaskStatus.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace velloro {

/// The entry that settles a period which has ended without a full one.
struct PeriodClosing {
  TaskFrequencyPeriod period = {};
  /// The last day of the period that reads as one of the period. Fortnights can overlap, and the
  /// last days of one may belong to the next.
  YYYYMMDD date = {};
  TaskLogEntryType type = TaskLogEntryType::unknown;
  double total = 0;  ///< What the period had reached.

  bool operator==(const PeriodClosing&) const = default;

  /// The row of the entry. \param at When the entry is made.
  [[nodiscard]] TaskLogRow row(Date at) const;
};

/// A miss or a skip, as the skip mode says; of a negative task a completion in place of the miss,
/// since it stayed clean.
[[nodiscard]] TaskLogEntryType closingType(SkipMode willSkip, bool isNegative);

/// The identifier of the entry that closes the period of a task with that first day: the same in
/// every process, so that a second one for the same period can be recognised.
[[nodiscard]] UniqueID closingEntryID(const UniqueID& task, YYYYMMDD periodStart);

/// Which periods of a task are to be closed, and how.
///
///     const PeriodClosings closings{
///         .rules = rules, .since = {2024, 3, 5}, .createdDay = {2024, 3, 1}};
///     closings.isAnyDue();    // true: the period of yesterday has ended
///     closings.firstDay();    // 20240305: the rows must begin there
///     closings.fromLog({}).size();    // 2: without entries, of the 5th and the 6th
///
/// Those that end before today, from the one on that holds the later of two days: the day on which
/// this was last done, and the day on which the task was made. Fortnights that overlap are closed
/// one after the other as `next` gives them, so each day is in exactly one of them.
struct PeriodClosings {
  const TaskLogRules& rules;
  TaskStatus status = defaultStatus;
  TaskShareStatus shareStatus = TaskShareStatus::notShared;
  YYYYMMDD since;
  YYYYMMDD createdDay;

  /// Whether a period has ended that may be open.
  [[nodiscard]] bool isAnyDue() const { return firstPeriod().endsBefore(rules.today()); }
  /// The first day that the rows must cover: counts of days and intervals look back.
  [[nodiscard]] YYYYMMDD firstDay() const;
  /// From the oldest. Each takes those before it into account, as if they were in the log. The work
  /// for a period does not depend on how many there are.
  [[nodiscard]] std::vector<PeriodClosing> fromLog(TaskLogRows rows) const;

 private:
  [[nodiscard]] TaskFrequencyPeriod firstPeriod() const;
};

/// What is kept of a log once the closings are in it, from what was kept before. Absent where the
/// whole log has to be walked: an entry stands behind the first closed period, or periods do not
/// follow one another.
///
/// \param rows From the first closed period on.
[[nodiscard]] std::optional<TaskTemporalData> afterClosing(
    const TaskTemporalData& before, TaskLogRows rows, const TaskLogRules& rules,
    const std::vector<PeriodClosing>& closings);

}  // namespace velloro
