#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/Platform.h"

#include <atomic>
#include <cstdint>
#include <type_traits>

namespace velloro {

/// Whether a task counts on the program's badge.
enum class BadgeMode : std::int8_t { doNotInclude, includeWhenIncomplete };

constexpr auto rawValues(std::type_identity<BadgeMode>) {
  using enum BadgeMode;
  return rawTexts<BadgeMode>({{doNotInclude, "none"}, {includeWhenIncomplete, "incomplete"}});
}

/// Where a task's times of day come from: from nowhere, from its history, from the user.
enum class ReminderType : std::int8_t { none, automatic, custom };

constexpr auto rawValues(std::type_identity<ReminderType>) {
  using enum ReminderType;
  return rawTexts<ReminderType>({{none, "none"}, {automatic, "automatic"}, {custom, "custom"}});
}

/// The type to begin with where none was chosen. Read it and set it from any thread.
inline std::atomic<ReminderType> initialReminderType{ReminderType::automatic};

/// The person whose clock determines a time, one of the two people of a shared task.
enum class NotificationTimeZone : std::int8_t { taskOwner, taskViewer };

constexpr auto rawValues(std::type_identity<NotificationTimeZone>) {
  using enum NotificationTimeZone;
  return rawTexts<NotificationTimeZone>({{taskOwner, "owner"}, {taskViewer, "viewer"}});
}

/// Whether a running timer is shown as a live activity.
enum class LiveActivityDisplayMode : std::int8_t { automatic, yes, no };

constexpr auto rawValues(std::type_identity<LiveActivityDisplayMode>) {
  using enum LiveActivityDisplayMode;
  return rawTexts<LiveActivityDisplayMode>({{automatic, "a"}, {yes, "y"}, {no, "n"}});
}

}  // namespace velloro
