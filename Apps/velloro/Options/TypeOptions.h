#pragma once

#include "VelloroCore/Types/AutomaticTaskType.h"

#include <optional>
#include <string>

namespace velloro {

class Command;
class Option;

/// `--type`, `--target`, `--unit`, `--speed`, `--workouts` and `--data-source`: what completes an
/// automatic task.
struct TypeOptions {
  std::optional<std::string> type, target, unit, speed, workouts, dataSource;
  const char* targetName = "--target";  ///< The option that gave the target, for error messages.

  /// Returns that of the target.
  Option addTo(const Command& command);
  /// Absent without a `--type`; its own target and unit where none is given.
  /// \param per The period in which the target is to be reached, where it is known.
  /// \throws UsageError
  [[nodiscard]] std::optional<AutomaticTaskType> value(
      std::optional<TaskFrequencyPeriodType> per = {}) const;

  /// Whether something was said of a type beyond its target.
  [[nodiscard]] bool areRefined() const { return speed || workouts || dataSource; }
  /// The type with what was said. \throws UsageError
  [[nodiscard]] AutomaticTaskType refined(AutomaticTaskType of) const;

 private:
  [[nodiscard]] AutomaticTaskType chosenType(std::optional<TaskFrequencyPeriodType> per) const;
  [[nodiscard]] double quantity(TaskType of, TypeUnit in, TaskFrequencyPeriodType per) const;
};

/// A duration must have room in its period.
/// \param name The option that was given as `text` and asks for it.
/// \throws UsageError
void expectToFit(const char* name, const std::string& text, const AutomaticTaskType& type,
                 TaskFrequencyPeriodType period);

}  // namespace velloro
