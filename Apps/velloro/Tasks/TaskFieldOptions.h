#pragma once

#include "Host/TaskWriter.h"
#include "velloro/Options/FrequencyOptions.h"
#include "velloro/Options/TypeOptions.h"

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
  /// Only what was given. \throws UsageError
  /// \param base The frequency that the task has so far.
  /// \param isShared With the user by someone else: it tells when its weeks begin in any mode.
  [[nodiscard]] TaskFields fields(const TaskFrequency& base, bool isShared = false) const;

 private:
  [[nodiscard]] std::optional<AutomaticTaskType> automaticTaskType(
      const TaskFrequency& frequency) const;
};

}  // namespace velloro
