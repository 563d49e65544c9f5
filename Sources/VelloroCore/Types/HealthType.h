#pragma once

#include "Foundation/Coding/RawValue.h"
#include "VelloroCore/Types/HealthTypeRow.h"

#include <cstdint>
#include <vector>

namespace velloro {

/// What of a person's health data can complete a task; `AutomaticTaskType::HealthType`. Its index
/// and its raw value are stored: a new type goes to the end.
///
///     rawValue(HealthType::mindfulMinutes);          // "hk_breathe"
///     fromRawValue<HealthType>("hk_distance");       // HealthType::runOrWalk
///     isDietary(HealthType::energyDeficit);          // true
///
/// What a type offers (units, speeds, targets, …) is asked of a `TaskType`, which every health type
/// is.
enum class HealthType : std::uint8_t {
  // clang-format off
  activity, sleep, inBed, bedtime, standHours, standMinutes, rollHours, moveMinutes, runOrWalk,
  climbFlights, burnActiveEnergy, wheelchairDistance, wheelchairPushes, workout, exercise,
  cycle, swimDistance, mindfulMinutes, velloroWorkout,
  dietaryDrinkWater, dietaryEnergy, dietarySugar, dietaryCaffeine, dietaryProtein, dietaryFiber,
  dietarySodium, dietaryCalcium, dietaryCarbohydrates, dietaryCholesterol, dietaryIron,
  dietaryMagnesium, dietaryVitaminA, dietaryVitaminB6, dietaryVitaminB12, dietaryVitaminC,
  dietaryVitaminD, dietaryVitaminE, dietaryVitaminK, dietaryZinc, dietaryFolate,
  dietaryPotassium, dietaryRiboflavin, dietaryThiamin, dietarySelenium, dietaryFatTotal,
  dietaryFatMonounsaturated, dietaryFatPolyunsaturated, dietaryFatSaturated, dietaryPhosphorus,
  dietaryNiacin, dietaryManganese, dietaryIodine, dietaryCopper, dietaryChromium,
  dietaryChloride, dietaryBiotin, dietaryMolybdenum, energyDeficit,
  recordWeight, recordBloodPressure, recordBloodGlucose, recordHeartRate,
  recordWaistCircumference, recordBodyTemperature, recordSexualActivity,
  recordBodyFatPercentage, recordAudiogram, recordElectroCardiogram, recordPeakExpiratoryFlow,
  recordHeight, recordInsulin, recordInhaler, recordOxygenSaturation,
  toothbrushingEventBrush, toothbrushingEventFloss, irregularHeartRhythmEvent,
  lowHeartRateEvent, highHeartRateEvent, handwashingEvent, alcoholConsumption,
  // clang-format on
};

namespace health_type_detail {
using enum HealthType;

/// The one place that says what each type is.
inline constexpr Row rows[] = {
    // clang-format off
    {activity, "hk_activity", noUnit, reads(activitySummary, Q::activeEnergyBurned, Q::appleExerciseTime, C::appleStandHour), noTitle, hourly},
    {sleep, "hk_sleep", hours, reads(C::sleepAnalysis), noTitle, hourly, stagesOfSleep},
    {inBed, "hk_in_bed", hours, reads(C::sleepAnalysis), noTitle, hourly},
    {bedtime, "hk_bedtime", timesOfDay, reads(C::sleepAnalysis), noTitle, hourly, sidesOfBedtime},
    {standHours, "hk_stand", hours, reads(C::appleStandHour), {Title::plain, "standing.hours"}},
    {standMinutes, "hk_stand_minutes", minutes, reads(Q::appleStandTime), {Title::breakable, "standing.minutes"}},
    {rollHours, "hk_roll_hours", hours, reads(C::appleStandHour), {Title::plain, "wheelchair.roll.hours"}},
    {moveMinutes, "hk_move_minutes", minutes, reads(Q::appleMoveTime), {Title::breakable, "move.minutes"}},
    {runOrWalk, "hk_distance", stepsOrDistance, reads(Q::stepCount), {Title::beforeUnit, "distance."}, hourly | adjustable, walkOrRun},
    {climbFlights, "hk_climb_flights", flights, reads(Q::flightsClimbed), {Title::plain, "flights.climbed"}, hourly | adjustable},
    {burnActiveEnergy, "hk_burn_active_calories", energy, reads(Q::activeEnergyBurned, activitySummary), {Title::behindUnit, ".burned.active"}, hourly | adjustable},
    {wheelchairDistance, "hk_wheelchair_distance", distance, reads(Q::distanceWheelchair), {Title::beforeUnit, "distance.wheelchair."}, hourly},
    {wheelchairPushes, "hk_wheelchair_pushes", pushes, reads(Q::pushCount), {Title::plain, "wheelchair.pushes"}, hourly},
    {workout, "hk_workout", workoutUnits, reads(workouts), {Title::breakable, "workout.minutes"}, adjustable | ofWorkouts},
    {exercise, "hk_exercise", minutes, reads(Q::appleExerciseTime), {Title::breakable, "exercise.minutes"}, adjustable},
    {cycle, "hk_cycle", distance, reads(workouts), {Title::beforeUnit, "cycle."}, hourly},
    {swimDistance, "hk_swim_distance", lengths, reads(workouts), {Title::beforeUnit, "swim."}, hourly},
    {mindfulMinutes, "hk_breathe", minutes, reads(C::mindfulSession), noTitle, adjustable | timed},
    {velloroWorkout, "hk_workout_velloro", noUnit, reads(workouts), noTitle, ofWorkouts},
    {dietaryDrinkWater, "hk_water", volume, reads(Q::dietaryWater), {Title::bySign, "DietaryDrinkWater"}, adjustable},
    {dietaryEnergy, "hk_dietary_energy", energy, reads(Q::dietaryEnergyConsumed), {Title::behindUnitBySign, ".dietary"}, hourly},
    {dietarySugar, "hk_dietary_sugar", grams, reads(Q::dietarySugar), {Title::bySign, "DietarySugar"}},
    {dietaryCaffeine, "hk_dietary_caffeine", milligrams, reads(Q::dietaryCaffeine), {Title::bySign, "DietaryCaffeine"}},
    {dietaryProtein, "hk_dietary_protein", grams, reads(Q::dietaryProtein), {Title::bySign, "DietaryProtein"}},
    {dietaryFiber, "hk_dietary_fiber", grams, reads(Q::dietaryFiber), {Title::bySign, "DietaryFiber"}},
    {dietarySodium, "hk_dietary_sodium", milligrams, reads(Q::dietarySodium), {Title::bySign, "DietarySodium"}},
    {dietaryCalcium, "hk_dietary_calcium", milligrams, reads(Q::dietaryCalcium), {Title::bySign, "DietaryCalcium"}},
    {dietaryCarbohydrates, "hk_dietary_carbs", grams, reads(Q::dietaryCarbohydrates), {Title::bySign, "DietaryCarbohydrates"}},
    {dietaryCholesterol, "hk_dietary_cholesterol", milligrams, reads(Q::dietaryCholesterol), {Title::bySign, "DietaryCholesterol"}},
    {dietaryIron, "hk_dietary_iron", milligrams, reads(Q::dietaryIron), {Title::bySign, "DietaryIron"}},
    {dietaryMagnesium, "hk_dietary_magnesium", milligrams, reads(Q::dietaryMagnesium), {Title::bySign, "DietaryMagnesium"}},
    {dietaryVitaminA, "hk_dietary_vitamina", micrograms, reads(Q::dietaryVitaminA), {Title::bySign, "DietaryVitaminA"}},
    {dietaryVitaminB6, "hk_dietary_vitaminb6", milligrams, reads(Q::dietaryVitaminB6), {Title::bySign, "DietaryVitaminB6"}},
    {dietaryVitaminB12, "hk_dietary_vitaminb12", micrograms, reads(Q::dietaryVitaminB12), {Title::bySign, "DietaryVitaminB12"}},
    {dietaryVitaminC, "hk_dietary_vitaminc", milligrams, reads(Q::dietaryVitaminC), {Title::bySign, "DietaryVitaminC"}},
    {dietaryVitaminD, "hk_dietary_vitamind", micrograms, reads(Q::dietaryVitaminD), {Title::bySign, "DietaryVitaminD"}},
    {dietaryVitaminE, "hk_dietary_vitamine", milligrams, reads(Q::dietaryVitaminE), {Title::bySign, "DietaryVitaminE"}},
    {dietaryVitaminK, "hk_dietary_vitamink", micrograms, reads(Q::dietaryVitaminK), {Title::bySign, "DietaryVitaminK"}},
    {dietaryZinc, "hk_dietary_zinc", milligrams, reads(Q::dietaryZinc), {Title::bySign, "DietaryZinc"}},
    {dietaryFolate, "hk_dietary_folate", micrograms, reads(Q::dietaryFolate), {Title::bySign, "DietaryFolate"}},
    {dietaryPotassium, "hk_dietary_potassium", milligrams, reads(Q::dietaryPotassium), {Title::bySign, "DietaryPotassium"}},
    {dietaryRiboflavin, "hk_dietary_riboflavin", milligrams, reads(Q::dietaryRiboflavin), {Title::bySign, "DietaryRiboflavin"}},
    {dietaryThiamin, "hk_dietary_thiamin", milligrams, reads(Q::dietaryThiamin), {Title::bySign, "DietaryThiamin"}},
    {dietarySelenium, "hk_dietary_selenium", micrograms, reads(Q::dietarySelenium), {Title::bySign, "DietarySelenium"}},
    {dietaryFatTotal, "hk_dietary_fat_total", grams, reads(Q::dietaryFatTotal), {Title::bySign, "DietaryFatTotal"}},
    {dietaryFatMonounsaturated, "hk_dietary_fat_monounsaturated", grams, reads(Q::dietaryFatMonounsaturated), {Title::bySign, "DietaryFatMonounsaturated"}},
    {dietaryFatPolyunsaturated, "hk_dietary_fat_polyunsaturated", grams, reads(Q::dietaryFatPolyunsaturated), {Title::bySign, "DietaryFatPolyunsaturated"}},
    {dietaryFatSaturated, "hk_dietary_fat_saturated", grams, reads(Q::dietaryFatSaturated), {Title::bySign, "DietaryFatSaturated"}},
    {dietaryPhosphorus, "hk_dietary_phosphorus", milligrams, reads(Q::dietaryPhosphorus), {Title::bySign, "DietaryPhosphorus"}},
    {dietaryNiacin, "hk_dietary_niacin", milligrams, reads(Q::dietaryNiacin), {Title::bySign, "DietaryNiacin"}},
    {dietaryManganese, "hk_dietary_manganese", milligrams, reads(Q::dietaryManganese), {Title::bySign, "DietaryManganese"}},
    {dietaryIodine, "hk_dietary_iodine", micrograms, reads(Q::dietaryIodine), {Title::bySign, "DietaryIodine"}},
    {dietaryCopper, "hk_dietary_copper", milligrams, reads(Q::dietaryCopper), {Title::bySign, "DietaryCopper"}},
    {dietaryChromium, "hk_dietary_chromium", micrograms, reads(Q::dietaryChromium), {Title::bySign, "DietaryChromium"}},
    {dietaryChloride, "hk_dietary_chloride", milligrams, reads(Q::dietaryChloride), {Title::bySign, "DietaryChloride"}},
    {dietaryBiotin, "hk_dietary_biotin", micrograms, reads(Q::dietaryBiotin), {Title::bySign, "DietaryBiotin"}},
    {dietaryMolybdenum, "hk_dietary_molybdenum", micrograms, reads(Q::dietaryMolybdenum), {Title::bySign, "DietaryMolybdenum"}},
    {energyDeficit, "hk_energy_deficit", energy, reads(Q::activeEnergyBurned, Q::dietaryEnergyConsumed, Q::basalEnergyBurned), {Title::deficit, "EnergyDeficit"}, hourly, sidesOfDeficit},
    {recordWeight, "hk_record_weight", noUnit, reads(Q::bodyMass)},
    {recordBloodPressure, "hk_record_blood_pressure", noUnit, reads(Q::bloodPressureSystolic, Q::bloodPressureDiastolic)},
    {recordBloodGlucose, "hk_record_blood_glucose", noUnit, reads(Q::bloodGlucose)},
    {recordHeartRate, "hk_record_heart_rate", noUnit, reads(Q::heartRate)},
    {recordWaistCircumference, "hk_record_waist_circumference", noUnit, reads(Q::waistCircumference)},
    {recordBodyTemperature, "hk_record_body_temperature", noUnit, reads(Q::bodyTemperature, Q::basalBodyTemperature)},
    {recordSexualActivity, "hk_record_sexual_activity", noUnit, reads(C::sexualActivity)},
    {recordBodyFatPercentage, "hk_record_body_fat_percentage", noUnit, reads(Q::bodyFatPercentage)},
    {recordAudiogram, "hk_record_audiogram", noUnit, reads(audiograms)},
    {recordElectroCardiogram, "hk_record_ecg", noUnit, reads(electrocardiograms)},
    {recordPeakExpiratoryFlow, "hk_record_pef", noUnit, reads(Q::peakExpiratoryFlowRate)},
    {recordHeight, "hk_record_height", noUnit, reads(Q::height)},
    {recordInsulin, "hk_record_insulin", noUnit, reads(Q::insulinDelivery)},
    {recordInhaler, "hk_record_inhaler", noUnit, reads(Q::inhalerUsage)},
    {recordOxygenSaturation, "hk_record_oxygen_saturation", noUnit, reads(Q::oxygenSaturation)},
    {toothbrushingEventBrush, "hk_toothbrushing_brush", minutes, reads(C::toothbrushingEvent), noTitle, timed},
    {toothbrushingEventFloss, "hk_toothbrushing_floss", noUnit, reads(C::toothbrushingEvent)},
    {irregularHeartRhythmEvent, "hk_irregular_heart_rhythm", noUnit, reads(C::irregularHeartRhythmEvent)},
    {lowHeartRateEvent, "hk_low_heart_rate", noUnit, reads(C::lowHeartRateEvent)},
    {highHeartRateEvent, "hk_high_heart_rate", noUnit, reads(C::highHeartRateEvent)},
    {handwashingEvent, "hk_handwashing", noUnit, reads(C::handwashingEvent)},
    {alcoholConsumption, "hk_alcohol_consumption", drinks, reads(Q::numberOfAlcoholicBeverages)},
    // clang-format on
};

}  // namespace health_type_detail

constexpr auto rawValues(std::type_identity<HealthType>) {
  return rawColumn(health_type_detail::rows);
}

/// What one eats and drinks, and its balance with what one burns.
[[nodiscard]] constexpr bool isDietary(HealthType type) {
  return type >= HealthType::dietaryDrinkWater && type <= HealthType::energyDeficit;
}

/// Whether the amount can fall as well as rise in the course of a period.
[[nodiscard]] constexpr bool isFluctuating(HealthType type) {
  return type == HealthType::energyDeficit;
}

/// The types that can be done with a timer running.
[[nodiscard]] std::vector<HealthType> timedTypes();

}  // namespace velloro
