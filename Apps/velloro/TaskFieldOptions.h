#pragma once

#include "Host/TaskWriter.h"
#include "velloro/FrequencyOptions.h"
#include "velloro/TypeOptions.h"

#include <optional>
#include <string>

namespace velloro {

/// The options that say what a task is, of the commands that make and change one.
struct TaskFieldOptions {
  FrequencyOptions frequency;
  TypeOptions type;
  std::optional<std::string> title, timer, startOfDay, firstDayOfWeek, zone, icon, color, page;
  bool isNegative = false;
  bool isPositive = false;

  void addTo(CLI::App& command);
  /// Only what was given. `base` is the frequency that it has so far. \throws UsageError
  [[nodiscard]] TaskFields fields(const TaskFrequency& base) const;

 private:
  [[nodiscard]] std::optional<AutomaticTaskType> automaticTaskType(std::int64_t parts) const;
};

}  // namespace velloro
