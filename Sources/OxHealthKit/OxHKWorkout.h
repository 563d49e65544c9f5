#pragma once

#include "Foundation/Time/DateInterval.h"
#include "OxHealthKit/OxHKQuantity.h"
#include "OxHealthKit/OxHKWorkoutActivityType.h"

#include <optional>
#include <vector>

namespace velloro {

/// What happened in the course of a workout. The raw value is the case's name.
enum class OxHKWorkoutEventType {
  pause,
  resume,
  lap,
  marker,
  motionPaused,
  motionResumed,
  segment,
  pauseOrResumeRequest
};

constexpr auto rawValues(std::type_identity<OxHKWorkoutEventType>) {
  return caseNames<OxHKWorkoutEventType::pauseOrResumeRequest>();
}

struct OxHKWorkoutEvent {
  OxHKWorkoutEventType type = OxHKWorkoutEventType::pause;
  DateInterval dateInterval = {};

  bool operator==(const OxHKWorkoutEvent&) const = default;
  static constexpr auto codingKeys = keys(key("type", &OxHKWorkoutEvent::type),
                                          key("dateInterval", &OxHKWorkoutEvent::dateInterval));
};

/// What a workout's sample holds beside its times.
struct OxHKWorkout {
  OxHKWorkoutActivityType activityType = OxHKWorkoutActivityType::other;
  std::optional<OxHKQuantity> totalEnergyBurned = {};
  std::optional<OxHKQuantity> totalDistance = {};
  /// Absent when none were recorded.
  std::optional<std::vector<OxHKWorkoutEvent>> events = {};

  bool operator==(const OxHKWorkout&) const = default;
  static constexpr auto codingKeys =
      keys(key("activityType", &OxHKWorkout::activityType, initialWhenUnknown),
           key("totalEnergyBurned", &OxHKWorkout::totalEnergyBurned),
           key("totalDistance", &OxHKWorkout::totalDistance), key("events", &OxHKWorkout::events));
};

}  // namespace velloro
