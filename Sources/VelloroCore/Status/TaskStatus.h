#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/EnumSet.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <type_traits>

namespace velloro {

/// The state of a task's life.
enum class TaskStatus : std::uint8_t { normal, paused, archived, trashed };

/// Of a task that was stored without one, or with one that is not known.
inline constexpr TaskStatus defaultStatus = TaskStatus::normal;

constexpr auto rawValues(std::type_identity<TaskStatus>) {
  using enum TaskStatus;
  return rawTexts<TaskStatus>({{normal, "N"}, {paused, "P"}, {archived, "A"}, {trashed, "T"}});
}

/// Those of the tasks that a user has in view.
inline constexpr EnumSet<TaskStatus> activeStatuses{TaskStatus::normal, TaskStatus::paused};

/// With whom a task is shared.
enum class TaskShareStatus : std::uint8_t { notShared, isSharedWithOthers, isSharedWithMe };

constexpr auto rawValues(std::type_identity<TaskShareStatus>) {
  return caseNames<TaskShareStatus::isSharedWithMe>();
}

}  // namespace velloro
