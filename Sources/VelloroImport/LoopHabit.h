#pragma once

#include "VelloroImport/ImportBuilder.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace velloro {

/// A habit of Loop Habit Tracker, as both of its forms have it.
struct LoopHabit {
  /// The values of a mark in a habit without amounts. Amounts stand there by the thousand.
  enum Value : std::int64_t { unknown = -1, no = 0, yesByItself = 1, yes = 2, skip = 3 };
  struct Mark {
    std::int64_t value = unknown;
    std::string note = {};
  };

  std::string key;  ///< What names it in its file.
  std::string name, question = {}, description = {}, unit = {};
  std::int64_t count = 1, days = 1;  ///< So often in so many days.
  bool isArchived = false, isNumerical = false, isAtMost = false;
  double target = 0;
  std::optional<OxCodableColor> color = {};
  std::optional<HHMMSS> reminder = {};
  std::int64_t reminderDays = 127;  ///< A bit for each day; the lowest is Saturday.
  std::map<YYYYMMDD, Mark> marks = {};
};

/// Adds the habit with its log, notes and reminder.
void addLoopHabit(const LoopHabit& habit, ImportBuilder& builder);

}  // namespace velloro
