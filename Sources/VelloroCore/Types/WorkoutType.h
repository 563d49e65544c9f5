#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Coding/RawValue.h"
#include "Foundation/Values/Hasher.h"
#include "Foundation/Values/UUID.h"
#include "OxHealthKit/OxHKWorkoutActivityType.h"
#include "OxKit/Platform.h"

#include <compare>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

namespace velloro {

/// A workout of the companion program: one that a person put together there, or one of its four
/// levels.
struct VelloroWorkoutWorkoutType {
  enum class System : std::uint8_t { easy, medium, hard, pain };

  /// In JSON {"custom": "1B4E28BA-…"} or {"system": "easy"}.
  struct ID {
    std::variant<UUID, System> value;

    [[nodiscard]] static constexpr ID custom(UUID id) { return {id}; }
    [[nodiscard]] static constexpr ID system(System level) { return {level}; }

    auto operator<=>(const ID&) const = default;
    static constexpr auto codingCases = cases(&ID::value, payload("custom"), payload("system"));
  };

  ID id;
  std::string title;

  auto operator<=>(const VelloroWorkoutWorkoutType&) const = default;
  static constexpr auto codingKeys = keys(key("id", &VelloroWorkoutWorkoutType::id),
                                          key("title", &VelloroWorkoutWorkoutType::title));
};

constexpr auto rawValues(std::type_identity<VelloroWorkoutWorkoutType::System>) {
  return caseNames<VelloroWorkoutWorkoutType::System::pain>();
}

/// A kind of workout that counts for a task; `AutomaticTaskType::WorkoutType`.
///
///     JSONEncoder{}.encode(WorkoutType::healthKit(OxHKWorkoutActivityType::yoga));  // "\"yoga\""
///     JSONEncoder{}.encode(WorkoutType::velloroWorkout(
///         {.id = VelloroWorkoutWorkoutType::ID::system(VelloroWorkoutWorkoutType::System::hard),
///          .title = "Hard"}));    // {"id":{"system":"hard"},"title":"Hard"}
struct WorkoutType {
  std::variant<OxHKWorkoutActivityType, VelloroWorkoutWorkoutType> value;

  [[nodiscard]] static WorkoutType healthKit(OxHKWorkoutActivityType type) { return {type}; }
  [[nodiscard]] static WorkoutType velloroWorkout(VelloroWorkoutWorkoutType workout) {
    return {std::move(workout)};
  }

  /// For logs: the name of the activity, or the title of the workout.
  [[nodiscard]] std::string debugDescription() const;

  auto operator<=>(const WorkoutType&) const = default;
  void hash(Hasher& hasher) const { hasher.combine(value); }
  /// Reading a text that names no activity fails with "Unable to decode enum: …", anything that is
  /// neither a text nor a workout of the companion with "Unable to decode WorkoutType: …".
  void encode(Encoder& to) const;
  static WorkoutType decode(const Decoder& from);
};

}  // namespace velloro
