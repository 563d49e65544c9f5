#pragma once

#include "HealthKit/HKSample.h"

#include <string>

namespace platform {

/// What is kept of a workout beside its times, for `HKSampleRow::details`.
[[nodiscard]] std::string detailsText(const HKWorkout& workout);

}  // namespace platform
