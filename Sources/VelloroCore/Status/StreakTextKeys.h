#pragma once

#include "OxKit/LocalizedKey.h"
#include "VelloroCore/Frequency/TaskFrequencyPeriodType.h"

namespace velloro {

/// The length of a run in periods: "12 days".
struct StreakLengthKey {
  TaskFrequencyPeriodType value;
  LocalizedKey key;
};

inline constexpr StreakLengthKey streakLengthKeys[] = {
    {TaskFrequencyPeriodType::day, {"days.quantity", "n"}},
    {TaskFrequencyPeriodType::week, {"weeks.quantity", "n"}},
    {TaskFrequencyPeriodType::fortnight, {"fortnights.quantity", "n"}},
    {TaskFrequencyPeriodType::month, {"months.quantity", "n"}},
    {TaskFrequencyPeriodType::year, {"years.quantity", "n"}}};

/// {0} any message, {1} the current run, {2} the best one.
inline constexpr LocalizedKey withCurrentAndBestStreak{"NotificationWithCurrentAndBestStreak",
                                                       "tnn"};

}  // namespace velloro
