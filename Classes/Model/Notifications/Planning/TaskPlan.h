#pragma once

#include "Notifications/Planning/NotificationHelper.h"
#include "Notifications/TaskNotifications.h"
#include "OxKit/FunctionRef.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "VelloroCore/Reminders/TaskNotificationSettings.h"
#include "VelloroCore/Status/CompletionStatus.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <type_traits>
#include <vector>

namespace velloro {

namespace task_plan {
inline constexpr std::int64_t daysPlanned = 3;
/// Beyond it, identifiers are not cancelled.
inline constexpr std::size_t mostReminders = 20;
}  // namespace task_plan

/// What was read of a task that is to be planned.
struct PlannedTask {
  UniqueID taskId;
  TaskStanding standing = {};
  TaskStatus status = defaultStatus;
  TaskNotificationSettings settings = {};
  /// When the partial entries of the present logical day were made.
  std::vector<Date> partialEntries = {};
  /// For one that was put off, and is not said to come back otherwise.
  TimeInterval snoozeDuration = defaultSnoozeDuration;
  TimeZone deviceTimeZone = TimeZone::gmt();

  static constexpr TimeInterval defaultSnoozeDuration = 1800;
};

/// What only those who hold the stored task can answer. The status is asked for once for each day,
/// and the content for each reminder that would come.
struct PlanQuestions {
  /// Of the period that holds the day.
  FunctionRef<CompletionStatus::Status(YYYYMMDD)> status;
  /// Of a day whose status was asked for last. Absent where there is nothing to say.
  FunctionRef<std::optional<NotificationContent>(YYYYMMDD, const TaskNotifications::Reminder&)>
      content;
};

/// Why a plan is as it is, for a reader who asks.
struct TaskPlanReport {
  enum class DayReason : std::uint8_t {
    needsReminders,
    noReminderType,  ///< The task's settings ask for no reminders.
    resting,         ///< The task is paused, archived or in the trash.
    settled,         ///< Nothing is left to be done, or to be avoided.
    willSkip,        ///< The task is not due.
  };
  enum class ReminderReason : std::uint8_t {
    planned,
    replaced,  ///< A later one of the third day has its identifier.
    otherWeekday,
    noTimeOfDay,
    past,
    coveredByLater,  ///< A later one of the list comes at that moment or before.
    coveredByStep,   ///< A step was made shortly before.
    nothingToSay,
  };
  struct Reminder {
    TaskReminder reminder;
    std::optional<Date> date = {};  ///< When it would come.
    bool isSnoozed = false;
    ReminderReason reason = ReminderReason::planned;
  };
  struct Day {
    YYYYMMDD day;
    bool isTaken = false;
    bool isFull = false;  ///< Whether each reminder of the day has an identifier of its own.
    DayReason reason = DayReason::needsReminders;
    std::optional<CompletionStatus::Status> status = {};
    std::vector<Reminder> reminders = {};  ///< Of a day that is taken, as they were considered.
  };

  std::vector<Day> days = {};
};

/// The reminders of a task on the present logical day and the two that follow. Of these days the
/// first two that need reminders have their full lists; a third one has a single reminder, the last
/// of its list, until it is nearer.
///
/// What is no longer wanted is cancelled: pending reminders of the days that need none and of the
/// day behind the three, and delivered ones of the two days before; those of the present day when
/// an entry has settled its period.
///
/// \param report Where reasons are added; null when nobody asks.
[[nodiscard]] NotificationHelper::ScheduleRequest plannedReminders(const PlannedTask& task,
                                                                   const PlanQuestions& ask,
                                                                   TaskPlanReport* report);

/// Absent if a task needs reminders in a period that stands so, else why it needs none.
[[nodiscard]] std::optional<TaskPlanReport::DayReason> whyNoReminders(
    TaskStatus status, const std::optional<AutomaticTaskType>& type,
    const CompletionStatus::Status& standing);

constexpr auto rawValues(std::type_identity<TaskPlanReport::DayReason>) {
  return caseNames<TaskPlanReport::DayReason::willSkip>();
}
constexpr auto rawValues(std::type_identity<TaskPlanReport::ReminderReason>) {
  return caseNames<TaskPlanReport::ReminderReason::nothingToSay>();
}

}  // namespace velloro
