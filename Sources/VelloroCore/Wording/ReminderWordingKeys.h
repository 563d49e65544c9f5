#pragma once

#include "OxKit/LocalizedKey.h"
#include "VelloroCore/Frequency/TaskFrequencyPeriodType.h"
#include "VelloroCore/Wording/NotificationIndividualReminder.h"

#include <vector>

namespace velloro {

/// What a reminder says, with the task's title in front as {0}, and without it where the title
/// stands above the message.
struct ReminderWording {
  LocalizedKey withTaskName;
  LocalizedKey noTask;
};

/// The texts of reminders, one table for each rule by which a text is chosen.
namespace reminder_wording {

using Kind = NotificationIndividualReminder;

inline constexpr ReminderWording reminder{{"NotificationIndividualWithTaskName", "t"},
                                          {"NotificationIndividualHeading", ""}};
inline constexpr ReminderWording keepAlive{
    {"NotificationIndividualMotivationKeepAlive", "t"},
    {"NotificationIndividualMotivationKeepAlive.NoTask", ""}};
inline constexpr ReminderWording missToBreak{
    {"NotificationIndividualMotivation.MissToBreak", "t"},
    {"NotificationIndividualMotivation.MissToBreak.NoTask", ""}};

/// One text, whatever the period.
struct Plain {
  Kind value;
  ReminderWording wording;
  bool isForLastDay = false;  ///< It says that the period ends today.
};

inline constexpr Plain plain[] = {
    {Kind::reminder, reminder},
    {Kind::dontBreak,
     {{"NotificationIndividualMotivationDontBreak", "t"},
      {"NotificationIndividualMotivationDontBreak.NoTask", ""}}},
    {Kind::keepAlive, keepAlive},
    {Kind::negativeStartNew,
     {{"NotificationIndividualMotivationNegativeStartNewStreak", "t"},
      {"NotificationIndividualMotivationNegativeStartNewStreak.NoTask", ""}}},
    {Kind::negativeAlmostBest,
     {{"NotificationIndividualMotivationNegativeAlmostBest", "t"},
      {"NotificationIndividualMotivationNegativeAlmostBest.NoTask", ""}}},
    {Kind::missToBreak, missToBreak, true},
    {Kind::missToBreakBestStreak,
     {{"NotificationIndividualMotivation.MissToBreakBest", "t"},
      {"NotificationIndividualMotivation.MissToBreakBest.NoTask", ""}},
     true},
};

/// Of a run that is counted in days, and of any other. The last argument is its length.
struct ByDay {
  Kind value;
  ReminderWording days;
  ReminderWording noPeriod;
};

inline constexpr ByDay byDay[] = {
    {.value = Kind::negativeStreak,
     .days = {{"NotificationIndividualMotivationNegativeStreak", "tn"},
              {"NotificationIndividualMotivationNegativeStreak.NoTask", "n"}},
     .noPeriod = {{"NotificationIndividualMotivationNegativeStreak.NoPeriod", "tn"},
                  {"NotificationIndividualMotivationNegativeStreak.NoTask.NoPeriod", "n"}}},
    // With the title there is no room for the length.
    {.value = Kind::negativeKeepAlive,
     .days = {{"NotificationIndividualMotivationNegativeKeepAlive", "t"},
              {"NotificationIndividualMotivationNegativeKeepAlive.NoTask", "n"}},
     .noPeriod = {{"NotificationIndividualMotivationNegativeKeepAlive.NoPeriod", "t"},
                  {"NotificationIndividualMotivationNegativeKeepAlive.NoTask.NoPeriod", "n"}}},
};

/// By when the period ends.
struct ByPeriodEnd {
  Kind value;
  ReminderWording today;
  ReminderWording thisMonth;
  ReminderWording periodEnd;  ///< The last argument is the day: "tomorrow", "Sunday", a date.
};

inline constexpr ByPeriodEnd byPeriodEnd[] = {
    {.value = Kind::extendBest,
     .today = {{"NotificationIndividualMotivationExtendBest", "t"},
               {"NotificationIndividualMotivationExtendBest.NoTask", ""}},
     .thisMonth = {{"NotificationIndividualMotivationExtendBest.ThisMonth", "t"},
                   {"NotificationIndividualMotivationExtendBest.NoTask.ThisMonth", ""}},
     .periodEnd = {{"NotificationIndividualMotivationExtendBest.PeriodEnd", "tt"},
                   {"NotificationIndividualMotivationExtendBest.NoTask.PeriodEnd", "t"}}},
    {.value = Kind::nearlyBest,
     .today = {{"NotificationIndividualMotivationNearlyBest", "t"},
               {"NotificationIndividualMotivationNearlyBest.NoTask", ""}},
     .thisMonth = {{"NotificationIndividualMotivationNearlyBest.ThisMonth", "t"},
                   {"NotificationIndividualMotivationNearlyBest.NoTask.ThisMonth", ""}},
     .periodEnd = {{"NotificationIndividualMotivationNearlyBest.PeriodEnd", "tt"},
                   {"NotificationIndividualMotivationNearlyBest.NoTask.PeriodEnd", "t"}}},
    {.value = Kind::startNew,
     .today = {{"NotificationIndividualMotivationStartNewStreak", "t"},
               {"NotificationIndividualMotivationStartNewStreak.NoTask", ""}},
     .thisMonth = {{"NotificationIndividualMotivationStartNewStreak.ThisMonth", "t"},
                   {"NotificationIndividualMotivationStartNewStreak.NoTask.ThisMonth", ""}},
     .periodEnd = {{"NotificationIndividualMotivationStartNewStreak.PeriodEnd", "tt"},
                   {"NotificationIndividualMotivationStartNewStreak.NoTask.PeriodEnd", "t"}}},
};

/// How far the target of a day is: {1} of {2} steps.
struct DailyTarget {
  Kind value;
  ReminderWording wording;
};

inline constexpr DailyTarget dailyTargets[] = {
    {Kind::partialCompletionsTarget,
     {{"NotificationIndividualMotivationDailyTarget", "tnn"},
      {"NotificationIndividualMotivationDailyTarget.NoTask", ""}}},
    {Kind::dayMissed,
     {{"NotificationIndividualMotivationKeepAlive.DayMissed", "tnn"},
      {"NotificationIndividualMotivationKeepAlive.NoTask.DayMissed", ""}}},
};

/// Behind the message {0} of a day: {1} of {2} steps of that day, or days of a longer period.
inline constexpr LocalizedKey todayProgress{"NotificationWithProgress.TodayProgress", "tnn"};

/// The kinds that tell how far the target of a longer period is. {1} of {2} are completed days, or
/// amounts with their units.
struct Progress {
  TaskFrequencyPeriodType value;
  Kind keepAlive;
  Kind missToBreak;
  Kind target;
  ReminderWording wording;  ///< Of `target`; the others have the words that go without progress.
  LocalizedKey bracket;     ///< Behind the message {0}.
};

inline constexpr Progress progress[] = {
    {TaskFrequencyPeriodType::week,
     Kind::keepAliveWeekProgress,
     Kind::missToBreakWeekProgress,
     Kind::weeklyTarget,
     {{"NotificationIndividualMotivationWeeklyTarget", "ttt"},
      {"NotificationIndividualMotivationWeeklyTarget.NoTask", ""}},
     {"NotificationWithProgress.WeekProgress", "ttt"}},
    {TaskFrequencyPeriodType::fortnight,
     Kind::keepAliveFortnightProgress,
     Kind::missToBreakFortnightProgress,
     Kind::fortnightlyTarget,
     {{"NotificationIndividualMotivationFortnightlyTarget", "ttt"},
      {"NotificationIndividualMotivationFortnightlyTarget.NoTask", ""}},
     {"NotificationWithProgress.FortnightProgress", "ttt"}},
    {TaskFrequencyPeriodType::month,
     Kind::keepAliveMonthProgress,
     Kind::missToBreakMonthProgress,
     Kind::monthlyTarget,
     {{"NotificationIndividualMotivationMonthlyTarget", "ttt"},
      {"NotificationIndividualMotivationMonthlyTarget.NoTask", ""}},
     {"NotificationWithProgress.MonthProgress", "ttt"}},
    {TaskFrequencyPeriodType::year,
     Kind::keepAliveYearProgress,
     Kind::missToBreakYearProgress,
     Kind::yearlyTarget,
     {{"NotificationIndividualMotivationYearlyTarget", "ttt"},
      {"NotificationIndividualMotivationYearlyTarget.NoTask", ""}},
     {"NotificationWithProgress.YearProgress", "ttt"}},
};

/// Names of the days that a period's end can be told by.
inline constexpr LocalizedKey yesterday{"Yesterday", ""};
inline constexpr LocalizedKey today{"Today", ""};
inline constexpr LocalizedKey tomorrow{"Tomorrow", ""};

[[nodiscard]] inline std::vector<LocalizedKey> all() {
  std::vector<LocalizedKey> keys{todayProgress, yesterday, today, tomorrow};
  const auto add = [&](const ReminderWording& wording) {
    keys.insert(keys.end(), {wording.withTaskName, wording.noTask});
  };
  for (const Plain& row : plain) add(row.wording);
  for (const ByDay& row : byDay) {
    add(row.days);
    add(row.noPeriod);
  }
  for (const ByPeriodEnd& row : byPeriodEnd) {
    add(row.today);
    add(row.thisMonth);
    add(row.periodEnd);
  }
  for (const DailyTarget& row : dailyTargets) add(row.wording);
  for (const Progress& row : progress) {
    add(row.wording);
    keys.push_back(row.bracket);
  }
  return keys;
}

}  // namespace reminder_wording
}  // namespace velloro
