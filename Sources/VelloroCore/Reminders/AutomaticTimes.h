#pragma once

#include "OxKit/FunctionRef.h"
#include "VelloroCore/Log/TaskLogWalk.h"
#include "VelloroCore/Reminders/TaskNotificationSettings.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <cstdint>
#include <optional>
#include <type_traits>
#include <vector>

namespace velloro {

/// What an automatic time of a task is derived from.
enum class AutomaticTimeSource : std::uint8_t {
  history,   ///< The times at which the user has done the task in the last days.
  filled,    ///< A time of the history, and the hours between the reminders of a day.
  default_,  ///< The place of a task without a history among the others.
  fixed,     ///< The task's target or start of day.
  sleep,     ///< The time at which the user tends to go to bed.
  owner,     ///< The times of the owner of a shared task.
};

constexpr auto rawValues(std::type_identity<AutomaticTimeSource>) {
  return caseNames<AutomaticTimeSource::owner>();
}

/// A time of day at which a user is reminded of a task without having chosen it.
struct AutomaticTime {
  using DayIndexes = TaskReminder::DayIndexes;

  HHMMSS time;
  AutomaticTimeSource source = AutomaticTimeSource::history;
  /// Of the history: the middle of the times at which the task was done, and their number.
  std::optional<HHMMSS> median = {};
  std::optional<std::int64_t> samples = {};
  EnumSet<DayOfWeek> days = everyDay();
  std::optional<DayIndexes> dayIndexesFromStart = {}, dayIndexesFromFinish = {};

  bool operator==(const AutomaticTime&) const = default;
};

/// What the automatic times of a task depend on, apart from its log.
struct AutomaticTimesFacts {
  TaskLogRules rules;
  std::optional<AutomaticTaskType> automaticTaskType = {};
  std::int64_t displayOrder = 0;
  std::optional<HHMMSS> timeOfGoingToBed = {};  ///< Absent if it is not known.
};

/// The days whose entries are the history of a task.
[[nodiscard]] YYYYMMDD::Range windowOfHistory(const TaskLogRules& rules);

/// The times of a task that is not another's, in ascending order. What the history says is filled
/// up to one time for each step of the day, and to no more than three.
///
///     const auto times = automaticTimes(
///         {.rules = rules, .displayOrder = 4},
///         [&](const YYYYMMDD::Range& window) { return TaskLogRows(); });
///     times.front().time;      // HHMMSS{.h = 18, .m = 40}: nothing is known of the task
///
/// \param log The rows of the task, or at least those of the given days. It is not called for a
/// task whose type alone decides.
[[nodiscard]] std::vector<AutomaticTime> automaticTimes(
    const AutomaticTimesFacts& facts, FunctionRef<TaskLogRows(const YYYYMMDD::Range&)> log);

/// The settings of a task with these automatic times instead of its former ones, which are muted
/// unless `reminderType` is automatic. Absent if that changes nothing.
///
/// A time that stays keeps its identifier and its snooze. If a snoozed reminder has no place in the
/// new list, the new reminder whose time is nearest takes its identifier and its snooze, so that
/// what was put off comes back.
///
///     const auto settings = withAutomaticTimes({.reminderType = ReminderType::automatic},
///                                              {{.time = {.h = 7, .m = 20}}});
///     settings->timeOfDayReminders().size();                           // 1
///     withAutomaticTimes(*settings, {{.time = {.h = 7, .m = 20}}});    // absent
[[nodiscard]] std::optional<TaskNotificationSettings> withAutomaticTimes(
    const TaskNotificationSettings& present, const std::vector<AutomaticTime>& times);

}  // namespace velloro
