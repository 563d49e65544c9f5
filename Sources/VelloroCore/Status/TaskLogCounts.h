#pragma once

#include "OxKit/FunctionRef.h"
#include "VelloroCore/Log/TaskLogWalk.h"
#include "VelloroCore/Status/TaskStatus.h"

#include <cstdint>
#include <optional>

namespace velloro {

/// How many days of a stretch are completed, the last one included.
struct NumUniqueCompletions {
  std::int64_t count = 0;
  /// Whether today is among them only because a negative task has no entry for it yet.
  bool assumesToday = false;

  bool operator==(const NumUniqueCompletions&) const = default;
  /// Without a day that is only assumed.
  [[nodiscard]] std::int64_t certainCount() const {
    return assumesToday && count > 0 ? count - 1 : count;
  }

  /// Of several full entries of one day, the one that `isFullEntryBefore` puts first counts, in any
  /// order of the rows.
  [[nodiscard]] static NumUniqueCompletions fromLog(TaskLogRows rows, const TaskLogRules& rules,
                                                    YYYYMMDD from, YYYYMMDD to);
};

/// The day of the newest full completion up to a day; absent when there is none.
[[nodiscard]] std::optional<YYYYMMDD> lastCompletedDate(TaskLogRows rows, YYYYMMDD onOrBefore);

/// What the outcome of a task's open period depends on, and the callbacks for what only the log
/// knows. Each is called at most once, and only for the frequencies that need it.
struct WillSkipQuestion {
  const TaskLogRules& rules;
  TaskStatus status = defaultStatus;
  TaskShareStatus shareStatus = TaskShareStatus::notShared;
  FunctionRef<YYYYMMDD()> createdDay;  ///< On which the task was made.
  /// Completed days from one day to another.
  FunctionRef<NumUniqueCompletions(YYYYMMDD, YYYYMMDD)> numUniqueCompletions;
  /// The day of the newest completion up to a day.
  FunctionRef<std::optional<YYYYMMDD>(YYYYMMDD)> lastCompletedDate;
};

/// A task that rests skips its periods. Another's log is not counted here, so nothing is said of
/// the periods of a task that is shared with the user.
[[nodiscard]] SkipMode willSkip(const TaskFrequencyPeriod& period,
                                const WillSkipQuestion& question);

}  // namespace velloro
