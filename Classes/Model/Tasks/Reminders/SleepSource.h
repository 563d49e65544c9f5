#pragma once

#include "HealthKit/HKSample.h"
#include "OxDateTime/YYYYMMDD.h"
#include "Tasks/Reminders/SleepTimes.h"

#include <optional>
#include <vector>

namespace velloro {

/// When the user tends to go to bed and to fall asleep, to wake and to get up, by samples of sleep.
/// Of each night, noon to noon, the longest stretch counts, and of the nights the median.
[[nodiscard]] SleepTimes::Times typicalSleepTimes(const std::vector<HKSample>& samples,
                                                  TimeZone timeZone);

/// The time of going to bed by the sleep of the last two weeks, which it puts into
/// `SleepTimes::shared()`. Without a health store, what stands there; absent where that is nothing.
[[nodiscard]] std::optional<HHMMSS> readTimeOfGoingToBed(YYYYMMDD today, HHMMSS startOfDay);

}  // namespace velloro
