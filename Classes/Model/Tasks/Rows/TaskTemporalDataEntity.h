#pragma once

#include "CoreData/Model/EntityClass.h"
#include "Tasks/Columns/StoredForms.h"

namespace velloro {

class TaskEntity;

/// What follows from a task's log, kept so that nobody has to walk the log to show the task. One
/// row a task, which can be computed again at any time.
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
