#pragma once

#include "Foundation/Coding/RawValue.h"
#include "Notifications/NotificationContent.h"
#include "OxKit/FunctionRef.h"

#include <cstdint>
#include <type_traits>

namespace velloro {

class TaskEntity;

/// The kinds of notification that `velloro notification make` knows.
enum class MadeKind : std::uint8_t { reminder, completion, progress, badge };

constexpr auto rawValues(std::type_identity<MadeKind>) {
  return caseNames<MadeKind::badge>();
}

/// What the program sends of that kind for a task: a reminder due at the beginning of the day, or
/// at once if the day has begun; the notice of the next tap; that of a running timer; or the number
/// of this task alone. Throws a HostError where there is none.
///
/// \param random 64 random bits, by which the words of a reminder are chosen.
[[nodiscard]] NotificationContent madeNotification(const TaskEntity& task, MadeKind kind,
                                                   YYYYMMDD day, Date now,
                                                   FunctionRef<std::uint64_t()> random);

}  // namespace velloro
