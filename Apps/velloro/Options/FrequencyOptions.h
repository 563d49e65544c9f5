#pragma once

#include "VelloroCore/Frequency/TaskFrequency.h"

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace velloro {

/// `--mode`, `--days`, `--times`, `--interval` and `--partial`: how often a task is due.
struct FrequencyOptions {
  std::optional<std::string> mode, days, times, interval, partial;

  /// `base` is what holds where an option is left out, as its help tells.
  void addTo(CLI::App& command, const TaskFrequency& base = TaskFrequency::defaultFrequency);
  [[nodiscard]] bool areGiven() const { return mode || days || times || interval || partial; }
  /// The given options over a base. Without a mode, `--days`, `--times` and `--interval` each call
  /// for theirs: specificDaysOfWeek, numberOfDaysInWeek (unless the base counts days already) and
  /// dayInterval.
  /// \throws UsageError, also for an option that the mode makes no use of.
  [[nodiscard]] TaskFrequency over(TaskFrequency base) const;
};

/// \throws UsageError for an option that was given although the mode makes no use of it.
void expectUse(const char* name, const std::optional<std::string>& text, DayMode mode, bool isUsed);

/// For a command's help: every mode's name.
[[nodiscard]] std::string modesFooter();

}  // namespace velloro
