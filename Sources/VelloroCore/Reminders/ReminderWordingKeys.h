#pragma once

#include "OxKit/LocalizedKey.h"
#include "VelloroCore/Frequency/TaskFrequencyPeriodType.h"

namespace velloro {

/// What a reminder says, with the task's title in front as {0}, and without it where the title
/// stands above the message.
struct ReminderWording {
  LocalizedKey withTaskName;
  LocalizedKey noTask;
};

namespace reminder_wording {

inline constexpr ReminderWording reminder{{"NotificationIndividualWithTaskName", "t"},
                                          {"NotificationIndividualHeading", ""}};

inline constexpr ReminderWording dontBreak{
    {"NotificationIndividualMotivationDontBreak", "t"},
    {"NotificationIndividualMotivationDontBreak.NoTask", ""}};
inline constexpr ReminderWording keepAlive{
    {"NotificationIndividualMotivationKeepAlive", "t"},
    {"NotificationIndividualMotivationKeepAlive.NoTask", ""}};
inline constexpr ReminderWording missToBreak{
    {"NotificationIndividualMotivation.MissToBreak", "t"},
    {"NotificationIndividualMotivation.MissToBreak.NoTask", ""}};
inline constexpr ReminderWording missToBreakBest{
    {"NotificationIndividualMotivation.MissToBreakBest", "t"},
    {"NotificationIndividualMotivation.MissToBreakBest.NoTask", ""}};

// Tasks of staying clear of something.
inline constexpr ReminderWording negativeStartNew{
    {"NotificationIndividualMotivationNegativeStartNewStreak", "t"},
    {"NotificationIndividualMotivationNegativeStartNewStreak.NoTask", ""}};
inline constexpr ReminderWording negativeAlmostBest{
    {"NotificationIndividualMotivationNegativeAlmostBest", "t"},
    {"NotificationIndividualMotivationNegativeAlmostBest.NoTask", ""}};

/// One whose text depends on whether the run is counted in days.
struct ByDay {
  ReminderWording days;
  ReminderWording noPeriod;
};

/// The last argument is the length of the run.
inline constexpr ByDay negativeStreak{
    .days = {{"NotificationIndividualMotivationNegativeStreak", "tn"},
             {"NotificationIndividualMotivationNegativeStreak.NoTask", "n"}},
    .noPeriod = {{"NotificationIndividualMotivationNegativeStreak.NoPeriod", "tn"},
                 {"NotificationIndividualMotivationNegativeStreak.NoTask.NoPeriod", "n"}}};
/// The length of the run is told only without the title.
inline constexpr ByDay negativeKeepAlive{
    .days = {{"NotificationIndividualMotivationNegativeKeepAlive", "t"},
             {"NotificationIndividualMotivationNegativeKeepAlive.NoTask", "n"}},
    .noPeriod = {{"NotificationIndividualMotivationNegativeKeepAlive.NoPeriod", "t"},
                 {"NotificationIndividualMotivationNegativeKeepAlive.NoTask.NoPeriod", "n"}}};

/// One whose text says when the period ends.
struct ByPeriodEnd {
  ReminderWording today;
  ReminderWording thisMonth;
  ReminderWording periodEnd;  ///< The last argument is the day: "tomorrow", "Sunday", a date.
};

inline constexpr ByPeriodEnd extendBest{
    .today = {{"NotificationIndividualMotivationExtendBest", "t"},
              {"NotificationIndividualMotivationExtendBest.NoTask", ""}},
    .thisMonth = {{"NotificationIndividualMotivationExtendBest.ThisMonth", "t"},
                  {"NotificationIndividualMotivationExtendBest.NoTask.ThisMonth", ""}},
    .periodEnd = {{"NotificationIndividualMotivationExtendBest.PeriodEnd", "tt"},
                  {"NotificationIndividualMotivationExtendBest.NoTask.PeriodEnd", "t"}}};
inline constexpr ByPeriodEnd nearlyBest{
    .today = {{"NotificationIndividualMotivationNearlyBest", "t"},
              {"NotificationIndividualMotivationNearlyBest.NoTask", ""}},
    .thisMonth = {{"NotificationIndividualMotivationNearlyBest.ThisMonth", "t"},
                  {"NotificationIndividualMotivationNearlyBest.NoTask.ThisMonth", ""}},
    .periodEnd = {{"NotificationIndividualMotivationNearlyBest.PeriodEnd", "tt"},
                  {"NotificationIndividualMotivationNearlyBest.NoTask.PeriodEnd", "t"}}};
inline constexpr ByPeriodEnd startNew{
    .today = {{"NotificationIndividualMotivationStartNewStreak", "t"},
              {"NotificationIndividualMotivationStartNewStreak.NoTask", ""}},
    .thisMonth = {{"NotificationIndividualMotivationStartNewStreak.ThisMonth", "t"},
                  {"NotificationIndividualMotivationStartNewStreak.NoTask.ThisMonth", ""}},
    .periodEnd = {{"NotificationIndividualMotivationStartNewStreak.PeriodEnd", "tt"},
                  {"NotificationIndividualMotivationStartNewStreak.NoTask.PeriodEnd", "t"}}};

/// Names of the days that a period's end can be told by.
inline constexpr LocalizedKey yesterday{"Yesterday", ""};
inline constexpr LocalizedKey today{"Today", ""};
inline constexpr LocalizedKey tomorrow{"Tomorrow", ""};

/// How far the target is, in the words for a period. {1} of {2} are completions, or amounts with
/// their units.
struct Progress {
  TaskFrequencyPeriodType value;
  ReminderWording target;
  /// A bracket behind a message, which is {0}.
  LocalizedKey bracket;
};

inline constexpr Progress progress[] = {
    {TaskFrequencyPeriodType::day,
     {{"NotificationIndividualMotivationDailyTarget", "tnn"},
      {"NotificationIndividualMotivationDailyTarget.NoTask", ""}},
     {"NotificationWithProgress.TodayProgress", "tnn"}},
    {TaskFrequencyPeriodType::week,
     {{"NotificationIndividualMotivationWeeklyTarget", "ttt"},
      {"NotificationIndividualMotivationWeeklyTarget.NoTask", ""}},
     {"NotificationWithProgress.WeekProgress", "ttt"}},
    {TaskFrequencyPeriodType::fortnight,
     {{"NotificationIndividualMotivationFortnightlyTarget", "ttt"},
      {"NotificationIndividualMotivationFortnightlyTarget.NoTask", ""}},
     {"NotificationWithProgress.FortnightProgress", "ttt"}},
    {TaskFrequencyPeriodType::month,
     {{"NotificationIndividualMotivationMonthlyTarget", "ttt"},
      {"NotificationIndividualMotivationMonthlyTarget.NoTask", ""}},
     {"NotificationWithProgress.MonthProgress", "ttt"}},
    {TaskFrequencyPeriodType::year,
     {{"NotificationIndividualMotivationYearlyTarget", "ttt"},
      {"NotificationIndividualMotivationYearlyTarget.NoTask", ""}},
     {"NotificationWithProgress.YearProgress", "ttt"}},
};

/// {1} of {2} completions of the day.
inline constexpr ReminderWording dayMissed{
    {"NotificationIndividualMotivationKeepAlive.DayMissed", "tnn"},
    {"NotificationIndividualMotivationKeepAlive.NoTask.DayMissed", ""}};

inline constexpr ReminderWording all[] = {reminder,
                                          dontBreak,
                                          keepAlive,
                                          missToBreak,
                                          missToBreakBest,
                                          negativeStartNew,
                                          negativeAlmostBest,
                                          negativeStreak.days,
                                          negativeStreak.noPeriod,
                                          negativeKeepAlive.days,
                                          negativeKeepAlive.noPeriod,
                                          extendBest.today,
                                          extendBest.thisMonth,
                                          extendBest.periodEnd,
                                          nearlyBest.today,
                                          nearlyBest.thisMonth,
                                          nearlyBest.periodEnd,
                                          startNew.today,
                                          startNew.thisMonth,
                                          startNew.periodEnd,
                                          dayMissed};
inline constexpr LocalizedKey dayNames[] = {yesterday, today, tomorrow};

}  // namespace reminder_wording
}  // namespace velloro
