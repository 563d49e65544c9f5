#pragma once

#include "Foundation/Coding/PropertyList.h"
#include "Foundation/Time/Calendar.h"
#include "Foundation/Time/Date.h"
#include "Foundation/Time/DateInterval.h"
#include "Foundation/Values/UUID.h"
#include "HealthKit/HKUnit.h"

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace platform {

/// A type of thing that a health store holds, by its identifier:
/// "HKQuantityTypeIdentifierStepCount".
struct HKObjectType {
  std::string identifier;

  auto operator<=>(const HKObjectType&) const = default;
  /// That of workouts.
  [[nodiscard]] static HKObjectType workoutType() { return {"HKWorkoutTypeIdentifier"}; }
  /// That of activity summaries, which are no samples.
  [[nodiscard]] static HKObjectType activitySummaryType() {
    return {"HKActivitySummaryTypeIdentifier"};
  }
};

/// An amount in a unit.
struct HKQuantity {
  HKUnit unit;
  double value = 0;

  [[nodiscard]] static HKQuantity quantityWithUnit(HKUnit unit, double doubleValue) {
    return {std::move(unit), doubleValue};
  }
  /// Absent in a unit that measures something else.
  [[nodiscard]] std::optional<double> doubleValueForUnit(const HKUnit& in) const {
    return unit.convert(value, in);
  }
  bool operator==(const HKQuantity&) const = default;
};

/// Who wrote a sample.
struct HKSource {
  std::string name;
  std::string bundleIdentifier;
  /// Whether the sample came in from elsewhere, whatever the name says.
  bool isImported = false;

  bool operator==(const HKSource&) const = default;
};

struct HKWorkout {
  std::string activityType;  ///< "running"
  std::optional<HKQuantity> totalEnergyBurned = {};
  std::optional<HKQuantity> totalDistance = {};
  double duration = 0;  ///< Seconds; without pauses it is less than the time from start to end.
  struct Event {
    std::string type;
    DateInterval dateInterval;

    bool operator==(const Event&) const = default;
  };
  std::vector<Event> events = {};

  bool operator==(const HKWorkout&) const = default;
};

/// A record of the health store: that something was so from its start to its end. Where both are
/// one instant it is a moment.
struct HKSample {
  using Category = std::int64_t;  ///< A state by its number.

  HKObjectType sampleType;
  Date start = {};
  Date end = {};
  /// Null for a type of which only the time is kept.
  std::variant<std::monostate, HKQuantity, Category, HKWorkout> value = {};
  UUID uuid = {};
  HKSource source = {};
  /// The device that measured it, as its description.
  std::string device = {};
  PropertyList::Dictionary metadata = {};

  [[nodiscard]] const HKQuantity* quantity() const { return std::get_if<HKQuantity>(&value); }
  [[nodiscard]] const HKWorkout* workout() const { return std::get_if<HKWorkout>(&value); }
  [[nodiscard]] std::optional<Category> category() const {
    const auto* state = std::get_if<Category>(&value);
    return state != nullptr ? std::optional(*state) : std::nullopt;
  }
};

/// The activity of a day. A goal that is not known is 0.
struct HKActivitySummary {
  std::int64_t day = 0;           ///< 20240307
  double activeEnergyBurned = 0;  ///< Kilocalories, as is the goal.
  double activeEnergyBurnedGoal = 0;
  double appleExerciseTime = 0;  ///< Minutes.
  double appleExerciseTimeGoal = 0;
  double appleStandHours = 0;
  double appleStandHoursGoal = 0;

  bool operator==(const HKActivitySummary&) const = default;
};

// What the store reads itself in a sample's metadata.
inline constexpr std::string_view syncIdentifierKey = "HKMetadataKeySyncIdentifier";
inline constexpr std::string_view syncVersionKey = "HKMetadataKeySyncVersion";

}  // namespace platform
