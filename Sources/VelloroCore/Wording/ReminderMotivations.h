#pragma once

#include "OxDateTime/DayOfWeek.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/FunctionRef.h"
#include "VelloroCore/Frequency/DatedPeriod.h"
#include "VelloroCore/Frequency/TaskFrequency.h"
#include "VelloroCore/Status/StreakRecord.h"
#include "VelloroCore/Status/TaskStatus.h"
#include "VelloroCore/Wording/NotificationIndividualReminder.h"

#include <cstdint>
#include <vector>

namespace velloro {

/// What a reminder's motivations go by: the task as it stands in one of its periods.
///
///     // Three days a week, none done yet, and one day is left after this Friday.
///     const TaskFrequency thrice{.dayMode = DayMode::numberOfDaysInWeek, .numCompletions = 3};
///     const YYYYMMDD friday{2024, 3, 8};
///     const ReminderFacts facts{.frequency = thrice,
///                               .timeZone = berlin,
///                               .today = friday,
///                               .period = thrice.period(friday, DayOfWeek::sunday, berlin),
///                               .streak = StreakRecord(4, 9)};
///     using enum NotificationIndividualReminder;
///     motivations(facts).contains(missToBreakWeekProgress);    // true
struct ReminderFacts {
  bool isNegative = false;
  TaskShareStatus shareStatus = TaskShareStatus::notShared;
  TaskFrequency frequency = {};
  bool hasAutomaticType = false;
  DayOfWeek firstDayOfWeek = DayOfWeek::sunday;
  TimeZone timeZone = TimeZone::gmt();  ///< In which days are counted.
  YYYYMMDD today = {};
  DatedPeriod period = {};  ///< Of the reminder.
  /// The run as it is kept (`TaskStanding::streak`), which is not always that of the period.
  StreakRecord streak = {};
  bool willSkip = false;  ///< Whether the period, if it ends as it stands, does not count.
  /// In the period; for a negative task these count towards a miss.
  std::int64_t partialCompletions = 0;
  std::int64_t expectedPartialCompletions = 1;
  // Where the completed days of a longer period are counted:
  YYYYMMDD createdDay = {};      ///< On which the task was made.
  std::int64_t completions = 0;  ///< In the one that holds the reminder's day.

  bool operator==(const ReminderFacts&) const = default;
};

/// What there is to say about the task, beside `reminder`, which always applies.
[[nodiscard]] NotificationIndividualReminders motivations(const ReminderFacts& facts);

/// The motivations in an order left to chance, with `reminder` behind them. The first one that has
/// words for the period makes the message.
///
/// \param random 64 random bits.
[[nodiscard]] std::vector<NotificationIndividualReminder> pickOrder(
    NotificationIndividualReminders motivations, FunctionRef<std::uint64_t()> random);

}  // namespace velloro
