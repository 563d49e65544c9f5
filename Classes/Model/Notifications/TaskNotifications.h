#pragma once

#include "Notifications/NotificationContentBuilder.h"
#include "OxKit/FunctionRef.h"
#include "Tasks/Rows/TaskEntity.h"

#include <cstdint>
#include <optional>

namespace velloro {

/// Makes the notifications of stored tasks. To be used on the queue of the task.
///
///     const TaskNotifications notifications({.now = now});
///     const auto content = notifications.reminder(
///         *task, {.id = NotificationID::badge(0), .day = {2024, 3, 7}},
///         [] { return Environment::current().random(); });
///     auto center = UNUserNotificationCenter::currentNotificationCenter();
///     if (content) center.addNotificationRequest(content->request());
struct TaskNotifications {
  NotificationContentBuilder builder;

  struct Reminder {
    NotificationID id;
    std::optional<UniqueID> reminderId = {};  ///< Absent for what no reminder of the task raised.
    YYYYMMDD day;
    std::optional<NotificationTrigger> trigger = {};  ///< Absent: at once.
    bool timeSensitive = false;
  };
  /// Absent for a task without an identifier, and where there is nothing to say.
  /// \param random 64 random bits, by which the words are chosen.
  [[nodiscard]] std::optional<NotificationContent> reminder(
      const TaskEntity& task, const Reminder& reminder, FunctionRef<std::uint64_t()> random) const;

  /// Tells of the next tap in a period, as if it had been made. Absent for a task without an
  /// identifier.
  [[nodiscard]] std::optional<NotificationContent> completion(
      const TaskEntity& task, const TaskFrequencyPeriod& period) const;

  /// Tells how long a task's timer has still to run in a period. Absent for a task without an
  /// identifier or a timer, and when its time is up.
  [[nodiscard]] std::optional<NotificationContent> timedProgress(
      const TaskEntity& task, const TaskFrequencyPeriod& period) const;
};

}  // namespace velloro
