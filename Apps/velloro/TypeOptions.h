#pragma once

#include "VelloroCore/AutomaticTaskType.h"

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace velloro {

/// `--type`, `--target` and `--unit`: what completes an automatic task.
struct TypeOptions {
  std::optional<std::string> type, target, unit;

  void addTo(CLI::App& command);
  /// Absent without a `--type`; its own target and unit where none is given.
  /// \throws UsageError
  [[nodiscard]] std::optional<AutomaticTaskType> value() const;

 private:
  [[nodiscard]] double quantity(TaskType of, TypeUnit in) const;
};

}  // namespace velloro
