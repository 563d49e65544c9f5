#pragma once

#include "VelloroCore/Titles/TaskDisplayTitle.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <optional>

namespace velloro {

/// The small icon beside a task's title, which shows what completes the task; absent for a positive
/// task that the user completes.
[[nodiscard]] inline std::optional<TaskDisplayTitle::TitleIcon> titleIcon(
    const std::optional<AutomaticTaskType>& automaticTaskType, bool isNegative) {
  using enum TaskDisplayTitle::TitleIcon;
  if (automaticTaskType) {
    if (automaticTaskType->type == TaskType::timer()) return timed;
    return automaticTaskType->type == TaskType::screenTime() ? hourGlass : health;
  }
  if (isNegative) return negative;
  return std::nullopt;
}

}  // namespace velloro
