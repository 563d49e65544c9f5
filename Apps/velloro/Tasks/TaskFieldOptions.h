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

  void addTo(const Command& command);
  /// Only what was given. \throws UsageError
  /// \param edited The task that is changed; null for a new one.
  [[nodiscard]] TaskFields fields(const TaskEntity* edited = nullptr) const;

 private:
  [[nodiscard]] std::optional<AutomaticTaskType> automaticTaskType(
      const TaskFrequency& frequency) const;
  /// With the amount of `--total` as the target.
  [[nodiscard]] TypeOptions targetOptions() const;
};

}  // namespace velloro
