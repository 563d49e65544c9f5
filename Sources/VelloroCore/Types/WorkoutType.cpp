#include "VelloroCore/Types/WorkoutType.h"

#include "Foundation/Coding/Coding.h"
#include "Foundation/Text/String.h"

namespace velloro {

std::string WorkoutType::debugDescription() const {
  const auto* workout = std::get_if<VelloroWorkoutWorkoutType>(&value);
  if (workout != nullptr) return workout->title;
  return velloro::debugDescription(std::get<OxHKWorkoutActivityType>(value));
}

void WorkoutType::encode(Encoder& to) const {
  std::visit([&](const auto& workout) { to.encode(workout); }, value);
}

WorkoutType WorkoutType::decode(const Decoder& from) {
  if (from.kind() == Decoder::Kind::text) {
    if (const auto type = fromRawValue<OxHKWorkoutActivityType>(from.text())) {
      return healthKit(*type);
    }
    throw from.dataCorrupted("Unable to decode enum: no activity has the name " +
                             inQuotes(from.text()));
  }
  try {
    return velloroWorkout(from.decode<VelloroWorkoutWorkoutType>());
  } catch (const DecodingError& error) {
    // Whatever was wrong: a newer companion may say what a workout is in another way, and its list
    // must still be read.
    throw DecodingError(DecodingError::Kind::dataCorrupted, error.codingPath(),
                        "Unable to decode WorkoutType: " + error.debugDescription());
  }
}

}  // namespace velloro
