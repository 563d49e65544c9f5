#include "OxHealthKit/QuantityUnits.h"

#include "HealthKit/HKUnit.h"

#include <map>
#include <string>

namespace velloro {

std::string_view usualUnit(OxHKSampleType::QuantityType type) {
  using enum OxHKSampleType::QuantityType;
  switch (type) {
    case activeEnergyBurned:
    case basalEnergyBurned:
    case dietaryEnergyConsumed:
      return "kcal";
    case appleExerciseTime:
    case appleStandTime:
    case appleMoveTime:
      return "min";
    case distanceWalkingRunning:
    case distanceWheelchair:
      return "km";
    case bodyMass:
      return "kg";
    case bloodPressureSystolic:
    case bloodPressureDiastolic:
      return "mmHg";
    case bloodGlucose:
      return "mg/dL";
    case heartRate:
      return "count/min";
    case waistCircumference:
    case height:
      return "cm";
    case underwaterDepth:
      return "m";
    case bodyTemperature:
    case basalBodyTemperature:
    case appleSleepingWristTemperature:
    case waterTemperature:
      return "degC";
    case bodyFatPercentage:
    case oxygenSaturation:
      return "%";
    case peakExpiratoryFlowRate:
      return "L/min";
    case insulinDelivery:
      return "IU";
    case dietaryWater:
      return "mL";
    case stepCount:
    case flightsClimbed:
    case pushCount:
    case inhalerUsage:
    case numberOfAlcoholicBeverages:
      return "count";
    default:
      return "g";  // what is eaten
  }
}

bool measures(OxHKSampleType::QuantityType type, std::string_view unit) {
  thread_local std::map<std::pair<OxHKSampleType::QuantityType, std::string>, bool> known;
  constexpr std::size_t mostKnown = 1000;
  const std::pair key(type, std::string(unit));
  const auto found = known.find(key);
  if (found != known.end()) return found->second;
  const auto own = HKUnit::fromString(usualUnit(type));
  const auto other = HKUnit::fromString(unit);
  const bool fits = own && other && own->isCompatible(*other);
  if (known.size() < mostKnown) known.emplace(key, fits);
  return fits;
}

}  // namespace velloro
