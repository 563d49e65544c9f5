#pragma once

#include "Notifications/NotificationContentBuilder.h"
#include "OxKit/FunctionRef.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "VelloroCore/Reminders/TaskNotificationSettings.h"

#include <cstdint>
#include <optional>

namespace velloro {

/// Makes the notifications of a stored task from what was read of it once, however many they are.
/// To be used on the queue of the task.
///
///     const auto notifications = TaskNotifications::of(*task, {.now = now});
///     const auto day = notifications.day({2024, 3, 7});
///     const auto content = notifications.reminder(day, {.id = NotificationID::badge(0)},
///                                                 [] { return Environment::current().random(); });
///     auto center = UNUserNotificationCenter::currentNotificationCenter();
///     if (content) center.addNotificationRequest(content->request());
struct TaskNotifications {
  NotificationContentBuilder builder;
  TaskSnapshot task;  ///< As of the builder's `now`.
  TaskNotificationSettings settings;
  PositionedTheme theme;

  /// Reads the task, its settings and the theme of its page.
  [[nodiscard]] static TaskNotifications of(const TaskEntity& task,
                                            const NotificationContentBuilder& builder);

  /// A day of reminders: its period, and how the task stands in it.
  struct Day {
    DatedPeriod period;
    StreakedCompletionStatus status;
  };
  [[nodiscard]] Day day(YYYYMMDD date) const;

  struct Reminder {
    NotificationID id;
    std::optional<UniqueID> reminderId = {};  ///< Absent for what no reminder of the task raised.
    std::optional<NotificationTrigger> trigger = {};  ///< Absent: at once.
    bool timeSensitive = false;
  };
  /// Absent for a task without an identifier, and where there is nothing to say.
  /// \param random 64 random bits, by which the words are chosen.
  [[nodiscard]] std::optional<NotificationContent> reminder(
      const Day& day, const Reminder& reminder, FunctionRef<std::uint64_t()> random) const;

  /// Tells of the next tap in a period, as if it had been made. Absent for a task without an
  /// identifier.
  [[nodiscard]] std::optional<NotificationContent> completion(
      const TaskFrequencyPeriod& period) const;

  /// Tells how long a task's timer has still to run in a period. Absent for a task without an
  /// identifier or a timer, and when its time is up.
  [[nodiscard]] std::optional<NotificationContent> timedProgress(
      const TaskFrequencyPeriod& period) const;
};

}  // namespace velloro
