#include "VelloroCore/WorkoutType.h"

#include "Foundation/Coding.h"
#include "Foundation/String.h"

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
    throw DecodingError(error.kind(), error.codingPath(),
                        "Unable to decode WorkoutType: " + error.debugDescription());
  }
}

}  // namespace velloro
