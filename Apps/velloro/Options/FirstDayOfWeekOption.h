#pragma once

#include "OxDateTime/DayOfWeek.h"
#include "velloro/Options/FrequencyOptions.h"

#include <optional>
#include <string>

namespace velloro {

class Command;

/// `--first-day-of-week DAY`, of the commands that count weeks.
struct FirstDayOfWeekOption {
  std::optional<std::string> text;

  void addTo(const Command& command);
  /// The given day, or the locale's. \throws UsageError
  [[nodiscard]] DayOfWeek value() const;
  /// The same for a task of that mode. \throws UsageError, also where the mode makes no use of it.
  /// \param chosen The options that chose the mode.
  [[nodiscard]] DayOfWeek value(DayMode mode, const FrequencyOptions& chosen) const;
};

}  // namespace velloro
