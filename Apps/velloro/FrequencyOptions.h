#pragma once

#include "VelloroCore/TaskFrequency.h"

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
  /// for theirs: specificDaysOfWeek, numberOfDaysInWeek and dayInterval.
  /// \throws UsageError
  [[nodiscard]] TaskFrequency over(TaskFrequency base) const;
};

/// For a command's help: every mode's name.
[[nodiscard]] std::string modesFooter();

}  // namespace velloro
