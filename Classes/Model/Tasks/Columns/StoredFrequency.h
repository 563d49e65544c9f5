#pragma once

#include "VelloroCore/Frequency/TaskFrequency.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <cstdint>
#include <optional>

namespace velloro {

/// A frequency as the four columns of a task's row hold it. One column has the completions that a
/// mode counts or, for `DayMode::dayInterval`, the days between two; days of the month have none.
struct StoredFrequency {
  DayMode daysMode = DayMode::specificDaysOfWeek;
  DaysOfWeek daysOfWeek = {};
  std::int64_t daysPerWeek = 0;
  std::int64_t daysTimesPerDay = 0;

  /// Counts are brought into the range of what can be chosen. A mode that a task of the type can't
  /// have gives every day of the week.
  [[nodiscard]] TaskFrequency frequency(const std::optional<AutomaticTaskType>& type) const;
  /// What `daysPerWeek` is of a frequency; absent for a mode that counts nothing.
  [[nodiscard]] static std::optional<std::int64_t> daysPerWeekOf(const TaskFrequency& frequency);
};

}  // namespace velloro
