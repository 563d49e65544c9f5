#pragma once

#include "Foundation/Time/Date.h"
#include "OxKit/Platform.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace velloro {

/// When a notification is due.
struct NotificationTrigger {
  Date date;

  bool operator==(const NotificationTrigger&) const = default;
};

/// Which of the program's notifications are put forward.
enum class RelevanceLevel : std::uint8_t {
  taskTimedCompletion,
  taskTimedPartialCompletion,
  taskCompletion,
  taskPartialCompletion,
  taskMiss,
  taskPartialMiss,
  timedTaskDuration,
  sharedTaskCompletion,
  sharedTaskMiss,
  sharedTaskPartialCompletion,
  sharedTaskPartialMiss,
  sharedTaskReminder,
  reminderHighPriority,
  reminderRegularPriority,
  reminderLowPriority,
};

/// In 0..1, the greater before the less.
[[nodiscard]] constexpr double relevanceScore(RelevanceLevel level) {
  constexpr std::array scores = {0.95, 0.85, 0.94, 0.84, 0.96, 0.86, 0.7, 0.92,
                                 0.93, 0.82, 0.83, 0.35, 0.5,  0.4,  0.3};
  return scores[static_cast<std::size_t>(level)];
}

}  // namespace velloro
