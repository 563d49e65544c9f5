#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Coding/RawValue.h"
#include "OxKit/Platform.h"

#include <compare>
#include <variant>

namespace velloro {

/// A type of sample that a health store holds.
///
///     const auto steps = OxHKSampleType::quantity(OxHKSampleType::QuantityType::stepCount);
///     JSONEncoder{}.encode(steps);                          // {"quantity":"stepCount"}
///     JSONEncoder{}.encode(OxHKSampleType::audiogram());    // {"audiogram":{}}
///
/// Types are ordered by their cases, so they can be keys of a set.
struct OxHKSampleType {
  /// Samples whose value is one of a few states. In JSON, and as a raw value, a case is its name.
  enum class CategoryType {
    sexualActivity,
    sleepAnalysis,
    appleStandHour,
    mindfulSession,
    toothbrushingEvent,
    handwashingEvent,
    irregularHeartRhythmEvent,
    lowHeartRateEvent,
    highHeartRateEvent,
    infrequentMenstrualCycles,
    irregularMenstrualCycles,
    persistentIntermenstrualBleeding,
    prolongedMenstrualPeriods
  };
  /// Samples whose value is an amount in some unit. The raw value is the case's name.
  enum class QuantityType {
    activeEnergyBurned,
    appleExerciseTime,
    stepCount,
    distanceWalkingRunning,
    bodyMass,
    bloodPressureSystolic,
    bloodPressureDiastolic,
    bloodGlucose,
    heartRate,
    waistCircumference,
    bodyTemperature,
    basalBodyTemperature,
    bodyFatPercentage,
    flightsClimbed,
    dietaryEnergyConsumed,
    basalEnergyBurned,
    appleStandTime,
    pushCount,
    distanceWheelchair,
    peakExpiratoryFlowRate,
    height,
    insulinDelivery,
    inhalerUsage,
    oxygenSaturation,
    appleMoveTime,
    numberOfAlcoholicBeverages,
    appleSleepingWristTemperature,
    underwaterDepth,
    waterTemperature,
    dietarySugar,
    dietaryCaffeine,
    dietaryProtein,
    dietaryFiber,
    dietarySodium,
    dietaryCarbohydrates,
    dietaryCholesterol,
    dietaryVitaminA,
    dietaryVitaminB6,
    dietaryVitaminB12,
    dietaryVitaminC,
    dietaryVitaminD,
    dietaryVitaminE,
    dietaryVitaminK,
    dietaryIron,
    dietaryZinc,
    dietaryMagnesium,
    dietaryCalcium,
    dietaryWater,
    dietaryFolate,
    dietaryPotassium,
    dietaryRiboflavin,
    dietaryThiamin,
    dietarySelenium,
    dietaryFatTotal,
    dietaryFatMonounsaturated,
    dietaryFatPolyunsaturated,
    dietaryFatSaturated,
    dietaryPhosphorus,
    dietaryNiacin,
    dietaryManganese,
    dietaryIodine,
    dietaryCopper,
    dietaryChromium,
    dietaryChloride,
    dietaryBiotin,
    dietaryMolybdenum
  };
  /// Samples that are made of others. The raw value is the case's name.
  enum class CorrelationType { bloodPressure };

  struct Audiogram {
    auto operator<=>(const Audiogram&) const = default;
  };
  struct Electrocardiogram {
    auto operator<=>(const Electrocardiogram&) const = default;
  };
  struct Workout {
    auto operator<=>(const Workout&) const = default;
  };

  std::variant<CategoryType, QuantityType, Audiogram, CorrelationType, Electrocardiogram, Workout>
      value;

  [[nodiscard]] static constexpr OxHKSampleType category(CategoryType type) { return {type}; }
  [[nodiscard]] static constexpr OxHKSampleType quantity(QuantityType type) { return {type}; }
  [[nodiscard]] static constexpr OxHKSampleType audiogram() { return {Audiogram{}}; }
  [[nodiscard]] static constexpr OxHKSampleType correlation(CorrelationType type) { return {type}; }
  [[nodiscard]] static constexpr OxHKSampleType electrocardiogram() {
    return {Electrocardiogram{}};
  }
  [[nodiscard]] static constexpr OxHKSampleType workout() { return {Workout{}}; }

  auto operator<=>(const OxHKSampleType&) const = default;
  static constexpr auto codingCases =
      cases(&OxHKSampleType::value, payload("category"), payload("quantity"), payload("audiogram"),
            payload("correlation"), payload("electrocardiogram"), payload("workout"));
};

constexpr auto rawValues(std::type_identity<OxHKSampleType::CategoryType>) {
  return caseNames<OxHKSampleType::CategoryType::prolongedMenstrualPeriods>();
}
constexpr auto rawValues(std::type_identity<OxHKSampleType::QuantityType>) {
  return caseNames<OxHKSampleType::QuantityType::dietaryMolybdenum>();
}
constexpr auto rawValues(std::type_identity<OxHKSampleType::CorrelationType>) {
  return caseNames<OxHKSampleType::CorrelationType::bloodPressure>();
}

}  // namespace velloro
