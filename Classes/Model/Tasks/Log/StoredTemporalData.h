#pragma once

#include "Tasks/Status/TaskSnapshot.h"

namespace velloro {

struct TaskLogSummary;
struct TaskRecentHistory;

/// What is kept of a task's log: what its outlook says, else its row; nothing in a task without
/// one.
[[nodiscard]] TaskTemporalData temporalData(const TaskEntity& task);
/// What `updateTemporalData` would keep.
[[nodiscard]] TaskTemporalData temporalDataFromLog(const TaskSnapshot& task, YYYYMMDD day,
                                                   TimeZone timeZone);
/// See `TaskEntity::updateTemporalData`.
void updateTemporalData(TaskEntity& task, YYYYMMDD day, TimeZone timeZone, Date now);

/// What the log says, by reading it.
/// \param from Absent for the whole log.
[[nodiscard]] TaskLogSummary logSummary(const TaskSnapshot& task, std::optional<YYYYMMDD> from,
                                        YYYYMMDD to);
/// \param from Absent for the oldest entry.
[[nodiscard]] TaskRecentHistory recentHistory(const TaskSnapshot& task,
                                              std::optional<YYYYMMDD> from, YYYYMMDD to);

}  // namespace velloro
