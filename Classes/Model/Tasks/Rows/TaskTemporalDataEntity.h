#pragma once

#include "CoreData/Model/EntityClass.h"
#include "Tasks/Columns/StoredForms.h"

namespace velloro {

class TaskEntity;

/// Values that are derived from a task's log, and stored so that showing the task requires no walk
/// over the log. One row per task, which can be computed again at any time.
class TaskTemporalDataEntity : public EntityClass<TaskTemporalDataEntity> {
 public:
  inline static auto description = NSEntityDescription::of<TaskTemporalDataEntity>();
  inline static const Attribute<std::int64_t> activeStreak{description, "activeStreak"};
  inline static const Attribute<std::int64_t> bestStreak{description, "bestStreak"};
  // The days of the newest completion, miss and skip.
  inline static const Attribute<std::optional<YYYYMMDD>> lastCompleted{description,
                                                                       "lastCompleted"};
  inline static const Attribute<std::optional<YYYYMMDD>> lastMissed{description, "lastMissed"};
  inline static const Attribute<std::optional<YYYYMMDD>> lastSkipped{description, "lastSkipped"};
  // The shares of completions in recent times, and of how many periods they are.
  inline static const Attribute<double> recentShortTermPct{description, "recentShortTermPct"};
  inline static const Attribute<double> recentLongTermPct{description, "recentLongTermPct"};
  inline static const Attribute<std::int16_t> recentShortTermNumSamples{
      description, "recentShortTermNumSamples"};
  inline static const Attribute<std::int16_t> recentLongTermNumSamples{description,
                                                                       "recentLongTermNumSamples"};
  /// Of the current period, which begins on `progressDate`.
  inline static const Attribute<double> progress{description, "progress"};
  inline static const Attribute<std::optional<YYYYMMDD>> progressDate{description, "progressDate"};
  inline static const Attribute<std::optional<Date>> lastChangedDifficulty{description,
                                                                           "lastChangedDifficulty"};
  inline static const Attribute<std::optional<std::string>> lastChangedDifficultyStatus{
      description, "lastChangedDifficultyStatus"};
  inline static const Attribute<std::optional<TimeZone>> lastChangedDifficultyTimeZone{
      description, "lastChangedDifficultyTimeZone"};
  /// When the row last changed.
  inline static const Attribute<std::optional<Date>> lastUpdated{description, "lastUpdated"};
  inline static const ToOne<TaskEntity> task{description, "task", "taskTemporalData"};
};

}  // namespace velloro
