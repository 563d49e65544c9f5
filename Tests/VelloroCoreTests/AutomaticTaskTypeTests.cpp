#include "Foundation/Coding/JSON.h"
#include "OxHealthKit/OxHKQuantity.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using enum HealthType;
using Period = TaskFrequencyPeriodType;

AutomaticTaskType task(TaskType type, double quantity, TypeUnit unit) {
  return AutomaticTaskType(type, TaskTarget{.quantity = quantity, .unit = unit});
}

std::vector<HealthType> typesFor(const auto& holds) {
  std::vector<HealthType> types;
  std::ranges::copy_if(allCases<HealthType>(), std::back_inserter(types), holds);
  return types;
}

TEST(AutomaticTaskType, OffersWhatItsTypeDoes) {
  EXPECT_EQ(typesFor([](TaskType type) {
              return type.quantitySelectionStyle() == QuantitySelectionStyle::optional;
            }),
            std::vector{workout});
  for (const TaskType type : TaskType::all()) {
    const auto units = type.unitOptions();
    const auto speeds = type.sortedSpeedOptions();
    EXPECT_EQ(type.usesHealthKit() && !units.empty(), type.defaultUnit().has_value());
    EXPECT_EQ(speeds.empty(), type.canSelectSpeed() == SpeedSelectionType::noSpeed);
    for (const TypeSpeed speed : type.defaultSpeeds()) {
      EXPECT_NE(std::ranges::find(speeds, speed), speeds.end()) << type.rawValue();
    }
    EXPECT_EQ(type.healthKitReadTypes(type.defaultUnit(), {}).empty(), !type.usesHealthKit());
  }
  EXPECT_EQ(TaskType(dietaryDrinkWater).defaultUnit(), TypeUnit::cupsUS);
  EXPECT_EQ(TaskType::timer().unitOptions().size(), TaskType(workout).unitOptions().size());
  EXPECT_EQ(TaskType(bedtime).quantitySelectionStyle(), QuantitySelectionStyle::required);
  EXPECT_EQ(TaskType(activity).quantitySelectionStyle(), QuantitySelectionStyle::unavailable);
  EXPECT_EQ(TaskType::screenTime().quantitySelectionStyle(), QuantitySelectionStyle::required);
}

TEST(AutomaticTaskType, ReadsWhatItCounts) {
  const auto reads = [](HealthType type, TypeUnit unit, TypeSpeeds speeds = {}) {
    return JSONEncoder{}.encode(TaskType(type).healthKitReadTypes(unit, speeds));
  };
  EXPECT_EQ(reads(runOrWalk, TypeUnit::steps), R"([{"sample":{"quantity":"stepCount"}}])");
  EXPECT_EQ(reads(runOrWalk, TypeUnit::distanceKm, {TypeSpeed::walk}),
            R"([{"sample":{"quantity":"distanceWalkingRunning"}}])");
  EXPECT_EQ(reads(runOrWalk, TypeUnit::distanceKm, {TypeSpeed::run}),
            R"([{"sample":{"workout":{}}}])");
  EXPECT_EQ(reads(burnActiveEnergy, TypeUnit::calories),
            R"([{"sample":{"quantity":"activeEnergyBurned"}},{"activitySummary":{}}])");
}

TEST(AutomaticTaskType, HasDefaultTargets) {
  const auto target = [](TaskType type, Period period) { return type.defaultTarget(period); };
  EXPECT_EQ(target(sleep, Period::week),
            (TaskTarget{56, TypeUnit::durationHours, TaskType(sleep).defaultSpeeds()}));
  EXPECT_FALSE(target(activity, Period::day));
  EXPECT_FALSE(target(TaskType::timer(), Period::day));
  EXPECT_EQ(target(energyDeficit, Period::week)->quantity, -50000);
  EXPECT_FALSE(target(energyDeficit, Period::month));
}

TEST(AutomaticTaskType, StepsToTheNextTarget) {
  EXPECT_EQ(task(dietaryDrinkWater, 2, TypeUnit::litres).nextQuantity(), 2.1);
  EXPECT_EQ(task(dietaryDrinkWater, 8, TypeUnit::litres).nextQuantity(), std::nullopt);
  EXPECT_EQ(task(dietaryDrinkWater, 8, TypeUnit::litres).nextQuantity(Period::week), 8.5);
  EXPECT_EQ(task(standMinutes, 20000, TypeUnit::durationMinutes).previousQuantity(Period::year),
            19850);
  EXPECT_EQ(task(TaskType::timer(), 10, TypeUnit::durationMinutes).nextQuantity(), std::nullopt);
  EXPECT_EQ(AutomaticTaskType(workout).previousQuantity(), std::nullopt);
}

TEST(AutomaticTaskType, KnowsHowOftenItCanBeDone) {
  const auto modes = [](const AutomaticTaskType& type) {
    return type.supportedFrequencyModes().size();
  };
  EXPECT_EQ(modes(AutomaticTaskType(activity)), 5U);
  EXPECT_EQ(modes(AutomaticTaskType(TaskType::screenTime())), 5U);
  EXPECT_EQ(modes(AutomaticTaskType(workout)), 5U);
  EXPECT_EQ(modes(AutomaticTaskType(TaskType::timer())), 7U);
  EXPECT_EQ(modes(task(workout, 20, TypeUnit::durationMinutes)), 7U);
  EXPECT_EQ(task(energyDeficit, 500, TypeUnit::calories).supportedFrequencyModes(),
            (std::vector{DayMode::specificDaysOfWeek, DayMode::dayInterval,
                         DayMode::numberOfDaysInWeek, DayMode::numberOfDaysInFortnight,
                         DayMode::numberOfDaysInMonth, DayMode::aggregateOverWeek}));
}

TEST(AutomaticTaskType, LimitsPartialCompletions) {
  struct Case {
    AutomaticTaskType type;
    Period period;
    std::int64_t maximum, atFirst, suggested;
  };
  const auto water = [](double quantity, TypeUnit unit) {
    return task(dietaryDrinkWater, quantity, unit);
  };
  const Case cases[] = {
      {AutomaticTaskType(activity), Period::day, 1, 1, 1},
      {AutomaticTaskType(TaskType::screenTime()), Period::week, 1, 1, 1},
      {AutomaticTaskType(TaskType::timer()), Period::week, 36, 1, 1},
      {task(energyDeficit, 500, TypeUnit::calories), Period::day, 1, 1, 1},
      {task(runOrWalk, 5, TypeUnit::distanceKm), Period::day, 1, 1, 1},
      {task(workout, 20, TypeUnit::durationMinutes), Period::day, 1, 1, 1},
      {AutomaticTaskType(workout), Period::day, 18, 1, 1},
      {AutomaticTaskType(recordWeight), Period::day, 18, 1, 1},
      {task(mindfulMinutes, 5, TypeUnit::durationMinutes), Period::month, 36, 1, 1},
      {task(dietaryIron, 12, TypeUnit::milligrams), Period::day, 18, 1, 1},
      {task(toothbrushingEventBrush, 3, TypeUnit::durationMinutes), Period::day, 18, 1, 2},
      {AutomaticTaskType(handwashingEvent), Period::day, 18, 1, 6},
      {task(alcoholConsumption, 5.9, TypeUnit::drinks), Period::day, 18, 1, 5},
      {water(2, TypeUnit::litres), Period::day, 18, 1, 8},
      {water(20, TypeUnit::litres), Period::day, 18, 1, 18},
      {water(20, TypeUnit::litres), Period::week, 36, 1, 36},
      {water(64, TypeUnit::fluidOuncesUS), Period::day, 18, 1, 8},
      {water(20, TypeUnit::fluidOuncesUS), Period::day, 18, 1, 3},
      {water(2000, TypeUnit::millilitres), Period::day, 18, 1, 8},
      {water(7.9, TypeUnit::cupsUS), Period::day, 18, 7, 7},
      {water(0.5, TypeUnit::cupsUS), Period::day, 18, 1, 1},
      {water(1e300, TypeUnit::cupsUS), Period::week, 36, 36, 36},
      {water(8, TypeUnit::steps), Period::day, 18, 1, 1}};
  for (const auto& [type, period, maximum, atFirst, suggested] : cases) {
    SCOPED_TRACE(type.debugDescription());
    EXPECT_EQ(type.minPartialCompletions(), 1);
    EXPECT_EQ(type.maxPartialCompletions(period), maximum);
    EXPECT_EQ(type.defaultPartialCompletions(period), atFirst);
    EXPECT_EQ(type.suggestedNumPartialCompletions(period), suggested);
  }
}

TEST(AutomaticTaskType, StoresATimersTargetWhole) {
  auto timer = AutomaticTaskType::timer(200, 3, TypeUnit::durationMinutes);
  EXPECT_EQ(timer.taskTarget(), (TaskTarget{10, TypeUnit::durationMinutes, {TypeSpeed::timed}}));
  EXPECT_EQ(timer.timerDurationPerCompletion(3), 200);
  EXPECT_EQ(timer.timerDurationPerCompletion(0), 0);
  EXPECT_EQ(
      AutomaticTaskType::timer(600, 1, TypeUnit::durationSeconds).timerDurationPerCompletion(3),
      200);
  timer.setTimerDuration(100, 36);
  EXPECT_EQ(timer.quantity, 60);
  timer.setTaskTarget({});
  EXPECT_FALSE(timer.timerDurationPerCompletion(1));

  AutomaticTaskType mindful(mindfulMinutes);
  mindful.setTimerDuration(0.1, 3);
  EXPECT_EQ(mindful, AutomaticTaskType::timer(0.1, 3, TypeUnit::durationSeconds));
  EXPECT_EQ(mindful.taskTarget()->unit, TypeUnit::durationSeconds);
}

TEST(AutomaticTaskType, AnswersForTheHealthStore) {
  EXPECT_EQ(task(runOrWalk, 1, TypeUnit::distanceMiles).taskProgressValueFromMetres(1609.344), 1);
  EXPECT_FALSE(AutomaticTaskType(workout).taskProgressValueFromMetres(1));
  EXPECT_EQ(task(standHours, 12, TypeUnit::durationHours).healthKitCountUnit(), OxHKUnit::count());
  EXPECT_FALSE(task(sleep, 8, TypeUnit::durationHours).healthKitCountUnit());
  EXPECT_FALSE(AutomaticTaskType(TaskType::timer()).healthKitCountUnit());

  using enum HealthKitStatisticsOptions;
  EXPECT_EQ(TaskType(recordHeartRate).healthKitStatisticsOptions(), discreteAverage);
  EXPECT_EQ(TaskType(cycle).healthKitStatisticsOptions(), cumulativeSum);
  EXPECT_EQ(TaskType::timer().healthKitStatisticsOptions(), none);
}

TEST(AutomaticTaskType, TellsWhatCanBeDoneWithIt) {
  const auto canAdjust = typesFor([](TaskType type) { return type.canAdjustDifficulty(); });
  EXPECT_EQ(canAdjust, (std::vector{runOrWalk, climbFlights, burnActiveEnergy, workout, exercise,
                                    mindfulMinutes, dietaryDrinkWater}));
  const auto isHourly = [](TaskType type) {
    return type.healthKitBackgroundUpdateFrequency() == HealthKitUpdateFrequency::hourly;
  };
  EXPECT_EQ(typesFor(isHourly),
            (std::vector{activity, sleep, inBed, bedtime, runOrWalk, climbFlights, burnActiveEnergy,
                         wheelchairDistance, wheelchairPushes, cycle, swimDistance, dietaryEnergy,
                         energyDeficit}));
  EXPECT_TRUE(AutomaticTaskType(TaskType::screenTime()).isTimed());
  EXPECT_TRUE(AutomaticTaskType(toothbrushingEventBrush).isTimed());
  EXPECT_FALSE(AutomaticTaskType(toothbrushingEventFloss).isTimed());
  EXPECT_TRUE(task(sleep, 8, TypeUnit::durationHours).quantityCanCountdown());
  EXPECT_FALSE(task(bedtime, 79200, TypeUnit::timeOfDay).quantityCanCountdown());
  EXPECT_FALSE(task(energyDeficit, 500, TypeUnit::calories).quantityCanCountdown());
  EXPECT_FALSE(AutomaticTaskType(workout).quantityCanCountdown());
}

}  // namespace
}  // namespace velloro
