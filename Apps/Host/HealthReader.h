#pragma once

#include "Foundation/Time/Date.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/Platform.h"
#include "OxKit/UniqueID.h"
#include "VelloroCore/Frequency/TaskFrequencyPeriod.h"
#include "VelloroCore/Health/QualifyInfo.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace velloro {

class TaskEntity;

/// The identifier of the entry that health data make in a period of a task: the same in every
/// process, and another than `closingEntryID`.
[[nodiscard]] UniqueID healthEntryID(const UniqueID& task, YYYYMMDD periodStart);

/// How far a task has come in a period by health data, or by its entries where there are none. For
/// a day before the task was made, too. Writes nothing.
/// \param period Not necessarily one of those that the task has at present.
[[nodiscard]] Result<QualifyInfo> readHealth(const TaskEntity& task,
                                             const TaskFrequencyPeriod& period, Date now);

/// What health data have made of a task's log.
struct HealthReading {
  bool isLogChanged = false;
  /// What the current period has reached, as `TaskTemporalDataEntity::progress`; absent where
  /// health data say nothing about the task.
  std::optional<double> progress = {};
  YYYYMMDD periodStart = {};
  /// The first day of the earliest period that is open again.
  std::optional<YYYYMMDD> reopened = {};
};

/// How far back past periods are read.
enum class HealthRange {
  changed,  ///< To the oldest change of the health data, and to the day when this was last done.
  recent,   ///< Two days, and the entries that the context is about to write.
};

/// Reads the current period of a task and past ones. In each of them that no full entry by hand
/// settles, a reached target becomes an automatic full entry in the place of a closing one. Where
/// the data no longer say so the entry is removed, and the period is open.
///
/// An amount that was entered by hand becomes a sample of the program's own with the identifier of
/// its entry, so that one reading counts both. It goes with its entry.
///
/// \param isSaved Whether the changes will be saved, in the transaction that this is called in.
///   Otherwise the context must not be saved, and no sample is written.
[[nodiscard]] HealthReading readHealthIntoLog(TaskEntity& task, Date now, HealthRange range,
                                              bool isSaved);

/// Puts the progress of the reading into what is kept of the log.
void keepHealthProgress(TaskEntity& task, const HealthReading& reading);

}  // namespace velloro
