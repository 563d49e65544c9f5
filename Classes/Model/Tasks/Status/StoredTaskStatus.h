#pragma once

#include "Tasks/Status/TaskSnapshot.h"
#include "VelloroCore/Status/TaskLogCounts.h"
#include "VelloroCore/Titles/TaskDisplayTitle.h"

namespace velloro {

/// Where no date is stored, the instant of the first entry of its log up to today; else now.
[[nodiscard]] Date creationDate(const TaskSnapshot& task);
/// The logical day of its creation date, by the clock of the zone that it was made in.
[[nodiscard]] YYYYMMDD createdDay(const TaskSnapshot& task);

// See the functions of the same names of `TaskEntity`.
[[nodiscard]] TaskDisplayTitle displayTitle(const TaskSnapshot& task, const TaskProgress& progress);
[[nodiscard]] SkipMode willSkip(const TaskSnapshot& task, const TaskFrequencyPeriod& period);
[[nodiscard]] StreakedCompletionStatus streakedCompletionStatus(const TaskSnapshot& task,
                                                                const TaskFrequencyPeriod& period);
[[nodiscard]] NumUniqueCompletions numUniqueCompletions(const TaskSnapshot& task, YYYYMMDD from,
                                                        YYYYMMDD to);
[[nodiscard]] std::optional<YYYYMMDD> lastCompletedDate(const TaskSnapshot& task,
                                                        YYYYMMDD onOrBefore);
/// The progress as it would be with that amount in an open period, and no timer running.
[[nodiscard]] TaskProgress progress(const TaskSnapshot& task, const TaskFrequencyPeriod& period,
                                    double amount);

}  // namespace velloro
