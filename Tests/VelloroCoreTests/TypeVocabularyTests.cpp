#include "OxHealthKit/OxHKQuantity.h"
#include "Support/Fixtures.h"
#include "VelloroCore/Titles/HealthTitleKey.h"
#include "VelloroCore/Titles/TaskDisplayTitle.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <unordered_set>

#include <gtest/gtest.h>

namespace velloro {
namespace {

TEST(TypeVocabulary, HasItsRawValues) {
  expectFixture("TypeUnit", everyCase<TypeUnit>());
  expectFixture("TypeSpeed", everyCase<TypeSpeed>());
  EXPECT_FALSE(fromRawValue<TypeUnit>("litre") || fromRawValue<TypeSpeed>("asleep"));
  expectRawValues<AutomaticTaskType::DataSource>({"curr", "all"});
  expectRawValues<QuantitySelectionStyle>({0, 1, 2});
  expectRawValues<VelloroWorkoutWorkoutType::System>({"easy", "medium", "hard", "pain"});
  expectFixture("TaskType", TaskType::all());
}

TEST(TaskType, IsOneByteOfEveryIndex) {
  static_assert(sizeof(TaskType) == 1);
  for (std::size_t i = 0; i < TaskType::all().size(); ++i) {
    const TaskType type = TaskType::all()[i];
    EXPECT_EQ(type.index(), i);
    EXPECT_EQ(TaskType::fromIndex(type.index()), type);
    EXPECT_EQ(TaskType::fromRawValue(type.rawValue()), type);
    EXPECT_EQ(type.usesHealthKit(), i < 80);
    EXPECT_EQ(type.healthType().has_value(), i < 80);
  }
  EXPECT_EQ(TaskType::fromIndex(80), TaskType::timer());
  EXPECT_EQ(TaskType::fromIndex(81), TaskType::screenTime());
  EXPECT_FALSE(TaskType::fromIndex(82) || TaskType::fromIndex(-1));
  EXPECT_FALSE(TaskType::fromRawValue("hk_unknown"));
  EXPECT_NE(decodingFailure<TaskType>("\"hk_unknown\"").find("hk_unknown"), std::string::npos);
}

TEST(HealthType, FallsIntoItsFamilies) {
  for (const HealthType type : allCases<HealthType>()) {
    const auto index = static_cast<int>(type);
    EXPECT_EQ(isDietary(type), index >= 19 && index <= 57) << rawValue(type);
    EXPECT_EQ(isFluctuating(type), index == 57) << rawValue(type);
  }
  EXPECT_EQ(timedTypes(),
            (std::vector{HealthType::mindfulMinutes, HealthType::toothbrushingEventBrush}));
}

TEST(TypeUnit, ConvertsDurationsOnly) {
  for (int seconds = 0; seconds < 100000; ++seconds) {
    for (const TypeUnit unit : {TypeUnit::durationHours, TypeUnit::durationMinutes}) {
      const auto there = convert(seconds, TypeUnit::durationSeconds, unit);
      ASSERT_EQ(convert(*there, unit, TypeUnit::durationSeconds), seconds);
    }
  }
  EXPECT_EQ(convert(1.5, TypeUnit::durationHours, TypeUnit::durationMinutes), 90);
  EXPECT_EQ(convert(90, TypeUnit::durationMinutes, TypeUnit::durationHours), 1.5);
  EXPECT_EQ(convert(7, TypeUnit::litres, TypeUnit::litres), 7);
  EXPECT_FALSE(convert(7, TypeUnit::litres, TypeUnit::millilitres));
  EXPECT_FALSE(convert(7, TypeUnit::durationHours, TypeUnit::steps));
  EXPECT_EQ(convertToTimeInterval(2, TypeUnit::drinks), 2);
  EXPECT_EQ(convertFromTimeInterval(7200, TypeUnit::durationHours), 2);
}

TEST(TypeUnit, KnowsMetresAndTheStoresUnits) {
  EXPECT_EQ(convertFromMetres(1609.344, TypeUnit::distanceMiles), 1);
  EXPECT_EQ(convertFromMetres(91.44, TypeUnit::distanceYards), 100);
  EXPECT_EQ(convertFromMetres(1234, TypeUnit::distanceKm), 1.234);
  EXPECT_FALSE(convertFromMetres(1, TypeUnit::steps));
  EXPECT_EQ(healthKitUnit(TypeUnit::cupsUS), OxHKUnit::cupUS());
  EXPECT_EQ(healthKitUnit(TypeUnit::flights), OxHKUnit::count());
  EXPECT_FALSE(healthKitUnit(TypeUnit::timeOfDay));
}

TEST(TypeUnit, ShowsWaterAndDistancesInTenths) {
  EXPECT_EQ(normalizeWaterValue(0.4, TypeUnit::millilitres), 0.4);
  EXPECT_EQ(normalizeWaterValue(1.25, TypeUnit::fluidOuncesUS), 1.3);
  EXPECT_EQ(normalizeDistanceValue(4.05), 4.1);
}

TEST(HealthTitleKey, FollowsTheFormOfItsType) {
  struct Case {
    HealthType type;
    TaskTarget target;
    HealthTitleForm form;
    const char* key;
  };
  using enum HealthType;
  using enum TypeUnit;
  const HealthTitleForm negative{.isNegative = true};
  const HealthTitleForm broken{.includeLineBreaks = true};
  const Case cases[] = {
      {standMinutes, {1, durationMinutes}, broken, "standing.minutes.breaks"},
      {standHours, {1, durationHours}, broken, "standing.hours"},
      {workout, {1, durationMinutes}, {}, "workout.minutes"},
      {runOrWalk, {1, distanceKm}, {}, "distance.km"},
      {bedtime, {1, timeOfDay, {TypeSpeed::asleepAfter}}, {}, "speed.asleep_after"},
      {bedtime, {1, timeOfDay}, {}, "No speed specified"},
      {wheelchairDistance, {1, distanceMiles}, {}, "distance.wheelchair.miles"},
      {burnActiveEnergy, {1, kilojoules}, broken, "kj.burned.active.breaks"},
      {dietaryEnergy, {1, calories}, negative, "kcal.dietary.under"},
      {dietaryEnergy, {1, calories}, broken, "kcal.dietary.over.breaks"},
      {dietaryVitaminB12, {1, micrograms}, negative, "DietaryVitaminB12Less"},
      {dietarySugar, {1, grams}, {}, "DietarySugarMore"},
      {energyDeficit, {0, calories, {TypeSpeed::lessThan}}, {}, "EnergyDeficit.LessThan.Zero"},
      {energyDeficit, {-5, calories}, {}, "EnergyDeficit.MoreThan.Long"}};
  for (const auto& [type, target, form, key] : cases) {
    EXPECT_EQ(titleKey(type, target, form), key);
  }
  EXPECT_FALSE(titleKey(sleep, {8, durationHours}));
  EXPECT_FALSE(titleKey(workout, {8, distanceKm}));
  EXPECT_FALSE(titleKey(runOrWalk, {8, steps}));
  EXPECT_EQ(predefinedTitleKey(workout), "PredefinedHealthTaskWorkout");
}

TEST(TypeExtra, CountsScreenTimeSelections) {
  const auto settings = [](const char* json) {
    return JSONDecoder{}.decode<ScreenTimeSettings>(json);
  };
  EXPECT_FALSE(settings("{}").isConfigured());
  EXPECT_FALSE(settings(R"({"_familyActivitySelection":{"apps":[],"sites":[]}})").isConfigured());
  EXPECT_EQ(
      settings(R"({"_familyActivitySelection":{"apps":[1,2],"sites":["a"]}})").numSelections(), 3U);
  EXPECT_EQ(settings(R"({"_familyActivitySelection":"AAEC"})").numSelections(), 1U);
  EXPECT_EQ(*settings(R"({"_familyActivitySelection":"AAEC"})").familyActivitySelection()->text(),
            "AAEC");
}

const auto companionWorkout = WorkoutType::velloroWorkout(
    {.id = VelloroWorkoutWorkoutType::ID::system(VelloroWorkoutWorkoutType::System::hard),
     .title = "Intervals"});

TEST(WorkoutType, IsOneValueInJSON) {
  const auto custom =
      WorkoutType::velloroWorkout({.id = VelloroWorkoutWorkoutType::ID::custom(
                                       *UUID::fromString("1B4E28BA-2FA1-11D2-883F-0016D3CCA427")),
                                   .title = "Stretching"});
  const auto yoga = WorkoutType::healthKit(OxHKWorkoutActivityType::yoga);
  expectFixture("WorkoutType", std::vector{yoga, companionWorkout, custom});
  EXPECT_EQ((std::unordered_set{yoga, companionWorkout, custom, yoga}.size()), 3U);

  struct Case {
    const char* json;
    const char* failure;
  };
  const Case cases[] = {
      {R"("napping")", "Unable to decode enum: no activity has the name \"napping\""},
      {"7", "Unable to decode WorkoutType: "},
      {R"({"title":"a"})", "Unable to decode WorkoutType: "},
      {R"({"id":{"system":"mild"},"title":"a"})", "id.system: Unable to decode WorkoutType: "}};
  for (const auto& [json, failure] : cases) {
    EXPECT_TRUE(decodingFailure<WorkoutType>(json).starts_with(failure))
        << decodingFailure<WorkoutType>(json);
  }
}

TEST(AutomaticTaskType, KeepsItsForm) {
  AutomaticTaskType workout(HealthType::workout, TaskTarget{30, TypeUnit::durationMinutes});
  workout.extra =
      TypeExtra{.workoutTypes = {companionWorkout,
                                 WorkoutType::healthKit(OxHKWorkoutActivityType::runningIndoor)},
                .healthKitRecordDuration = 90,
                .screenTimeSettings = ScreenTimeSettings{._familyActivitySelection = "AAEC"}};
  workout.dataSource = AutomaticTaskType::DataSource::currentTask;
  expectFixture("AutomaticTaskType", workout);
  const AutomaticTaskType bare(HealthType::handwashingEvent);
  EXPECT_EQ(JSONEncoder{}.encode(bare), R"({"type":"hk_handwashing","quantity":0,"speeds":[]})");
  EXPECT_NE(std::hash<AutomaticTaskType>{}(workout), std::hash<AutomaticTaskType>{}(bare));
  EXPECT_EQ(workout.debugDescription(),
            "type=hk_workout quantity=30 unit=minutes speeds=[] extra=(workoutTypes="
            "[runningIndoor, Intervals] healthKitRecordDuration=90 screenTimeSettings=1)");
}

TEST(TaskDisplayTitle, KeepsItsForm) {
  const TaskDisplayTitle title{
      .localizedPrimary = "Sleep",
      .quantity =
          TaskDisplayTitle::Quantity{.type = HealthType::sleep,
                                     .quantity = {7.5,
                                                  TypeUnit::durationHours,
                                                  {TypeSpeed::sleepREM, TypeSpeed::sleepCore}}},
      .localizedSecondary = "7½ h"};
  expectFixture("TaskDisplayTitle", title);
  EXPECT_EQ(title.withoutQuantity(),
            (TaskDisplayTitle{.localizedPrimary = "Sleep", .localizedSecondary = "7½ h"}));
  EXPECT_FALSE(TaskDisplayTitle{.localizedSecondary = "a"}.withoutQuantity());
  EXPECT_EQ(TaskDisplayTitle::empty().localizedPrimary, "");
}

}  // namespace
}  // namespace velloro
