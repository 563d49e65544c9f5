#include "Foundation/Coding/JSON.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Health/AutomaticTaskTypeQualifierOperation.h"
#include "OxHealthKit/HKObjects.h"
#include "OxKit/Numbers.h"
#include "Tasks/Reminders/SleepSource.h"
#include "VelloroCore/Advice/ChangeDifficultyCalculator.h"

#include <random>
#include <set>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using Quantity = OxHKSampleType::QuantityType;
using Category = OxHKSampleType::CategoryType;
using Operation = AutomaticTaskTypeQualifierOperation;

class Qualifier : public testing::Test {
 protected:
  [[nodiscard]] Result<QualifyInfo> read(const AutomaticTaskType& type) const {
    auto operation = std::make_shared<Operation>();
    operation->type = type;
    operation->period = period_;
    operation->timeZone = zone_;
    operation->startOfDay = startOfDay_;
    operation->store = store_;
    operation->currentDate = now_;
    operation->taskID = task_;
    operation->sortedInternalRecords = records_;
    operation->start();
    operation->waitUntilFinished();
    return operation->result.value();
  }
  [[nodiscard]] double value(HealthType type, double target = 8, std::optional<TypeUnit> unit = {},
                             TypeSpeeds speeds = {}) const {
    const auto info = read(typeOf(type, target, unit, speeds));
    if (!info) ADD_FAILURE() << rawValue(type) << ": " << info.error()->localizedDescription();
    return info ? info->progress.base.currentValue(now_) : -1;
  }
  [[nodiscard]] static AutomaticTaskType typeOf(HealthType type, double target,
                                                std::optional<TypeUnit> unit,
                                                TypeSpeeds speeds = {}) {
    AutomaticTaskType made(TaskType{type});
    made.quantity = target;
    made.unit = unit ? unit : TaskType(type).defaultUnit();
    made.speeds = speeds;
    return made;
  }
  void save(HKSample sample) const {
    const auto written = store_->save({std::move(sample)});
    ASSERT_TRUE(written) << written.error()->localizedDescription();
  }
  void add(Quantity type, double amount, const char* unit, Date start, Date end,
           const std::string& source = "x", const std::string& device = "") const {
    save({.sampleType = hkObjectType(OxHKSampleType::quantity(type)),
          .start = start,
          .end = end,
          .value = HKQuantity{*HKUnit::fromString(unit), amount},
          .source = {.name = {}, .bundleIdentifier = source},
          .device = device});
  }
  void add(Category type, std::int64_t state, Date start, Date end,
           PropertyList::Dictionary metadata = {}) const {
    save({.sampleType = hkObjectType(OxHKSampleType::category(type)),
          .start = start,
          .end = end,
          .value = HKSample::Category{state},
          .source = {.name = {}, .bundleIdentifier = "x"},
          .metadata = std::move(metadata)});
  }
  void sleep(std::int64_t state, const char* start, const char* end) const {
    add(Category::sleepAnalysis, state, at(start), at(end));
  }
  [[nodiscard]] static Date at(const std::string& text) {
    return Date::fromISO8601("2024-03-" + text + ":00+01:00").value();
  }

  const VirtualEnvironment environment_;
  const std::shared_ptr<HKHealthStore> store_ = std::make_shared<HKHealthStore>(
      environment_.directories().temporary / "health.sqlite", "velloro.app");
  TimeZone zone_ = TimeZone::fromIdentifier("Europe/Berlin").value();
  HHMMSS startOfDay_ = HHMMSS::midnight;
  TaskFrequencyPeriod period_ = TaskFrequencyPeriod::fromDate(TaskFrequencyPeriodType::day,
                                                              {2024, 3, 7}, DayOfWeek::sunday, {});
  Date now_ = at("07T23:00");
  UniqueID task_ = UniqueID::create();
  std::optional<std::vector<InternalRecord>> records_;
};

TEST_F(Qualifier, SaysWhyThereIsNoAnswer) {
  const auto reason = [&](const AutomaticTaskType& type) {
    const auto info = read(type);
    return info ? "none" : info.error()->localizedDescription();
  };
  const auto water = typeOf(HealthType::dietaryDrinkWater, 8, {});
  EXPECT_EQ(reason(AutomaticTaskType(TaskType::timer())), "noQualifyAlgorithm");
  EXPECT_EQ(reason(AutomaticTaskType(TaskType::screenTime())), "noQualifyAlgorithm");
  EXPECT_EQ(reason(water), "healthKitNotAvailable");
  records_ = {{.quantity = 3}, {.quantity = 2}};
  auto info = read(water);
  EXPECT_EQ(info->readingType, QualifyInfo::ReadingType::fromLogEntries);
  EXPECT_EQ(info->progress.base.currentValue(now_), 5);
  records_->push_back({.isFull = true, .quantity = 1});
  EXPECT_EQ(read(water)->progress.base.currentValue(now_), 8);
  records_->push_back({.quantity = 9});
  EXPECT_EQ(read(water)->progress.base.currentValue(now_), 15);

  add(Quantity::dietaryWater, 1, "cup_us", at("07T10:00"), at("07T10:00"));
  EXPECT_EQ(read(water)->readingType, QualifyInfo::ReadingType::fromHealthKitData);
  AutomaticTaskType none = water;
  none.unit.reset();
  EXPECT_EQ(reason(none), "noUnit");
  AutomaticTaskType walk = typeOf(HealthType::runOrWalk, 5, TypeUnit::calories);
  EXPECT_EQ(reason(walk), "noHealthKitReadTypes");
  EXPECT_EQ(reason(typeOf(HealthType::energyDeficit, 5, TypeUnit::litres)), "noUnit");
  AutomaticTaskType cycle = typeOf(HealthType::cycle, 5, {});
  cycle.unit.reset();
  EXPECT_EQ(reason(cycle), "noUnit");
  std::swap(period_.startDate, period_.finishDate);
  period_.finishDate = period_.finishDate.previousDay({});
  EXPECT_EQ(reason(typeOf(HealthType::sleep, 8, {})), "invalidPeriodType");
}

TEST_F(Qualifier, AddsUpWhatIsLoggedByHand) {
  add(Quantity::dietaryWater, 250, "mL", at("07T08:00"), at("07T08:00"));
  add(Quantity::dietaryWater, 250, "mL", at("07T08:00"), at("07T08:00"), "y");
  add(Quantity::dietaryWater, 1, "L", at("07T00:00"), at("07T00:00"), "velloro.app");
  add(Quantity::dietaryWater, 9, "L", at("08T00:00"), at("08T00:00"));
  add(Quantity::dietaryWater, 9, "L", at("06T23:00"), at("07T00:00"));
  auto info = read(typeOf(HealthType::dietaryDrinkWater, 2, TypeUnit::litres));
  EXPECT_EQ(info->progress.base.currentValue(now_), 1.5);
  ASSERT_EQ(info->healthRecords.size(), 3);
  EXPECT_FALSE(info->healthRecords[0].isExternal);
  EXPECT_TRUE(info->healthRecords[1].isExternal);
  EXPECT_EQ(info->healthRecords[1].quantity, 0.25);

  auto own = typeOf(HealthType::dietaryDrinkWater, 2, TypeUnit::litres);
  own.dataSource = AutomaticTaskType::DataSource::currentTask;
  EXPECT_EQ(read(own)->progress.base.currentValue(now_), 0) << "it was not for this task";
  for (const auto& [task, source] :
       {std::pair(task_, "velloro.app"), {task_, "x"}, {UniqueID::create(), "velloro.app"}}) {
    save({.sampleType = hkObjectType(OxHKSampleType::quantity(Quantity::dietaryWater)),
          .start = at("07T09:00"),
          .end = at("07T09:00"),
          .value = HKQuantity{*HKUnit::fromString("L"), 0.125},
          .source = {.name = {}, .bundleIdentifier = source},
          .metadata = {{"velloro_task_id", task.stringValue()}}});
  }
  EXPECT_EQ(read(own)->progress.base.currentValue(now_), 0.125);

  add(Quantity::dietarySugar, 7.999995, "g", at("07T12:00"), at("07T12:00"));
  EXPECT_EQ(value(HealthType::dietarySugar, 8), 8);
  add(Quantity::dietaryProtein, 7.99, "g", at("07T12:00"), at("07T12:00"));
  EXPECT_EQ(value(HealthType::dietaryProtein, 8), 7.99);
  EXPECT_EQ(value(HealthType::dietaryFiber, 0.000009), 0.000009);
}

TEST_F(Qualifier, CountsTotalsOnceAndDays) {
  add(Quantity::stepCount, 3000, "count", at("07T08:00"), at("07T09:00"), "w", "model:Watch");
  add(Quantity::stepCount, 5000, "count", at("07T08:30"), at("07T09:30"), "p", "model:iPhone");
  add(Quantity::stepCount, 1000, "count", at("06T23:30"), at("07T00:30"), "p", "model:iPhone");
  add(Quantity::stepCount, 700, "count", at("07T00:00"), at("07T00:00"), "w", "model:Watch");
  // Half an hour of the phone's beside the watch's, and half an hour after midnight; the watch's
  // moment is one of those half an hour.
  EXPECT_EQ(value(HealthType::runOrWalk, 10000, TypeUnit::steps), 3000 + 2500 + 500 + 700);
  period_ = TaskFrequencyPeriod::fromDate(TaskFrequencyPeriodType::month, {2024, 3, 7},
                                          DayOfWeek::sunday, {});
  EXPECT_EQ(value(HealthType::runOrWalk, 10000, TypeUnit::steps), 3000 + 2500 + 1000 + 700);

  add(Quantity::activeEnergyBurned, 418.4, "kJ", at("07T08:00"), at("07T09:00"));
  EXPECT_EQ(value(HealthType::burnActiveEnergy, 500, TypeUnit::calories), 100);
  add(Category::appleStandHour, 0, at("07T08:00"), at("07T09:00"));
  add(Category::appleStandHour, 1, at("07T09:00"), at("07T10:00"));
  EXPECT_EQ(value(HealthType::standHours, 12), 1);
  add(Quantity::bloodPressureSystolic, 120, "mmHg", at("07T08:00"), at("07T08:00"));
  add(Quantity::bloodPressureDiastolic, 80, "mmHg", at("07T08:00"), at("07T08:00"));
  EXPECT_EQ(value(HealthType::recordBloodPressure), 1);
  add(Quantity::bodyTemperature, 37, "degC", at("07T08:00"), at("07T08:00"));
  add(Quantity::basalBodyTemperature, 97, "degF", at("07T08:00"), at("07T08:00"));
  EXPECT_EQ(value(HealthType::recordBodyTemperature), 2);
}

TEST_F(Qualifier, TellsBrushingFromFlossing) {
  const PropertyList::Dictionary floss = {{"velloro_toothbrushing_type", "floss"}};
  add(Category::toothbrushingEvent, 0, at("07T08:00"), at("07T08:02"));
  add(Category::toothbrushingEvent, 0, at("07T08:01"), at("07T08:04"));
  add(Category::toothbrushingEvent, 0, at("07T09:00"), at("07T09:10"), floss);
  add(Category::toothbrushingEvent, 0, at("07T10:00"), at("07T10:10"), floss);
  EXPECT_EQ(value(HealthType::toothbrushingEventBrush, 3), 4);
  EXPECT_EQ(value(HealthType::toothbrushingEventFloss), 2);
}

TEST_F(Qualifier, KnowsNights) {
  sleep(0, "06T22:00", "07T07:00");
  sleep(3, "06T22:30", "07T02:00");
  sleep(4, "07T01:00", "07T06:30");
  sleep(2, "07T03:00", "07T03:30");
  sleep(1, "06T17:59", "06T18:30");
  sleep(3, "07T18:00", "07T23:00");
  const TypeSpeeds stages = TaskType(HealthType::sleep).defaultSpeeds();
  EXPECT_EQ(value(HealthType::sleep, 8, {}, stages), 8);
  EXPECT_EQ(value(HealthType::sleep, 8, {}, {TypeSpeed::sleepDeep}), 5.5);
  EXPECT_EQ(value(HealthType::inBed, 8), 9);
  EXPECT_EQ(value(HealthType::sleep, 8, {}, {}), 8) << "without stages those asleep";

  // A bedtime on the 7th is the evening of that day, and waking is on the next morning.
  const auto meets = [&](TypeSpeed speed, HHMMSS time) {
    return value(HealthType::bedtime, static_cast<double>(time.intValue()), {}, {speed}) == 1;
  };
  EXPECT_TRUE(meets(TypeSpeed::asleepBefore, {.h = 18, .m = 30}));
  EXPECT_FALSE(meets(TypeSpeed::asleepBefore, {.h = 18})) << "strictly before";
  EXPECT_TRUE(meets(TypeSpeed::asleepAfter, {.h = 17}));
  EXPECT_FALSE(meets(TypeSpeed::inBedBefore, {.h = 22}));
  sleep(5, "08T00:59", "08T06:00");
  now_ = at("08T06:30");
  EXPECT_FALSE(meets(TypeSpeed::awakeBefore, {.h = 7}))
      << "who got up half an hour ago may go back";
  now_ = at("08T06:31");
  period_ = TaskFrequencyPeriod::fromDate(TaskFrequencyPeriodType::day, {2024, 3, 7},
                                          DayOfWeek::sunday, {});
  EXPECT_TRUE(meets(TypeSpeed::awakeBefore, {.h = 7}));
  EXPECT_FALSE(meets(TypeSpeed::awakeAfter, {.h = 7}));
  EXPECT_TRUE(meets(TypeSpeed::awakeAfter, {.h = 5}));

  const Date end = at("07T01:00");
  const DateRange first{end - 3600, end};
  EXPECT_EQ(normalizedSegments({first, {end + 7140, end + 9000}}, 7200).size(), 1);
  EXPECT_EQ(normalizedSegments({{end + 7200, end + 9000}, first}, 7200).size(), 2);
}

TEST_F(Qualifier, MergesRandomNights) {
  std::mt19937 random(11);
  for (int round = 0; round < 200; ++round) {
    std::vector<DateRange> ranges;
    std::set<int> minutes;
    for (int count = static_cast<int>(random() % 12); count > 0; --count) {
      const int start = static_cast<int>(random() % 600), length = static_cast<int>(random() % 90);
      ranges.push_back({at("07T00:00") + start * 60, at("07T00:00") + (start + length) * 60});
      for (int minute = start; minute < start + length; ++minute) minutes.insert(minute);
    }
    EXPECT_EQ(totalDuration(ranges), static_cast<double>(minutes.size()) * 60) << round;
  }
}

TEST_F(Qualifier, WeighsEnergy) {
  const auto qualifies = [&](TypeSpeed direction, double target) {
    const auto info = read(typeOf(HealthType::energyDeficit, target, {}, {direction}));
    return info->progress.base.as<TaskProgressDateRange>()->scale == 1;
  };
  add(Quantity::activeEnergyBurned, 600, "kcal", at("07T08:00"), at("07T09:00"));
  add(Quantity::basalEnergyBurned, 1400, "kcal", at("07T00:00"), at("08T00:00"));
  EXPECT_FALSE(qualifies(TypeSpeed::greaterThan, 100)) << "without food";
  EXPECT_FALSE(qualifies(TypeSpeed::lessThan, 10000)) << "without food";
  add(Quantity::dietaryEnergyConsumed, 1500, "kcal", at("07T12:00"), at("07T12:00"));
  EXPECT_TRUE(qualifies(TypeSpeed::greaterThan, 500));
  EXPECT_TRUE(qualifies(TypeSpeed::lessThan, 500));
  EXPECT_FALSE(qualifies(TypeSpeed::greaterThan, 501));
  EXPECT_FALSE(qualifies(TypeSpeed::lessThan, 499));

  const auto rings = [&] {
    return *read(typeOf(HealthType::activity, 0, {}))
                ->progress.base.as<TaskProgressActivityRings>();
  };
  EXPECT_EQ(rings().energy, 0) << "no summary is no error";
  const HKActivitySummary summary{.day = 20240307,
                                  .activeEnergyBurned = 250,
                                  .activeEnergyBurnedGoal = 500,
                                  .appleExerciseTime = 30,
                                  .appleStandHours = 9,
                                  .appleStandHoursGoal = 12};
  ASSERT_TRUE(store_->write([&](HKSampleWriter& writer) {
    (void)writer.add(summary);
    return writer.commit();
  }));
  EXPECT_EQ(rings().energy, 0.5);
  EXPECT_EQ(rings().exercise, 0) << "without a goal";
  EXPECT_EQ(rings().stand, 0.75);
  const auto advice = [&](HealthType type, double target, TypeUnit unit) {
    const auto found = ChangeDifficultyCalculator::activityRingsRecommendation(
        summary, type, {.quantity = target, .unit = unit});
    return found ? JSONEncoder{}.encode(*found) : "absent";
  };
  EXPECT_EQ(
      advice(HealthType::burnActiveEnergy, 250, TypeUnit::kilojoules),
      R"({"source":{"external":{"_0":{"activityMove":{}}}},"type":{"typeQuantity":{"_0":2092}}})");
  EXPECT_EQ(advice(HealthType::burnActiveEnergy, 500, TypeUnit::calories), "absent");
  EXPECT_EQ(advice(HealthType::burnActiveEnergy, 250, TypeUnit::steps), "absent");
  EXPECT_EQ(advice(HealthType::sleep, 8, TypeUnit::durationHours), "absent");
}

TEST_F(Qualifier, ChoosesWorkouts) {
  const auto add = [&](const char* activity, std::optional<bool> isIndoor, double km,
                       const std::string& source = "x", const char* level = nullptr) {
    HKSample sample{
        .sampleType = HKObjectType::workoutType(),
        .start = at("07T08:00"),
        .end = at("07T09:00"),
        .value = HKWorkout{.activityType = activity,
                           .totalEnergyBurned = HKQuantity{*HKUnit::fromString("kJ"), 418.4},
                           .totalDistance = HKQuantity{*HKUnit::fromString("km"), km},
                           .duration = 1800},
        .source = {.name = {}, .bundleIdentifier = source}};
    if (isIndoor) sample.metadata.emplace("HKIndoorWorkout", *isIndoor);
    if (level != nullptr) sample.metadata.emplace("VWMetadataKeyDifficultyLevel", level);
    save(sample);
  };
  add("running", true, 5);
  add("running", false, 7);
  add("cycling", {}, 20);
  add("running", {}, 1, "velloro.workout", "hard");
  const auto chosen = [&](std::set<OxHKWorkoutActivityType> activities,
                          std::optional<TypeUnit> unit) {
    auto type = typeOf(HealthType::workout, 10, unit);
    type.unit = unit;
    type.extra.emplace();
    for (const auto one : activities) type.extra->workoutTypes.insert(WorkoutType::healthKit(one));
    return read(type)->progress.base.currentValue(now_);
  };
  using enum OxHKWorkoutActivityType;
  EXPECT_EQ(chosen({}, {}), 4);
  EXPECT_EQ(chosen({running}, TypeUnit::distanceKm), 13);
  EXPECT_EQ(chosen({runningIndoor}, TypeUnit::distanceMeters), 5000);
  EXPECT_EQ(chosen({runningOutdoor, cycling}, TypeUnit::durationMinutes), 60);
  EXPECT_EQ(chosen({yoga}, {}), 0);
  EXPECT_EQ(chosen({cycling}, TypeUnit::calories), 100);
  EXPECT_EQ(value(HealthType::cycle, 10, TypeUnit::distanceKm), 20);
  EXPECT_EQ(value(HealthType::runOrWalk, 10, TypeUnit::distanceKm, {TypeSpeed::run}), 13);
  auto companion = typeOf(HealthType::velloroWorkout, 1, {});
  EXPECT_EQ(read(companion)->progress.base.currentValue(now_), 1);
  using System = VelloroWorkoutWorkoutType::System;
  for (const auto& [level, count] : {std::pair(System::hard, 1), {System::easy, 0}}) {
    companion.extra =
        TypeExtra{.workoutTypes = {WorkoutType::velloroWorkout(
                      {.id = VelloroWorkoutWorkoutType::ID::system(level), .title = {}})}};
    EXPECT_EQ(read(companion)->progress.base.currentValue(now_), count);
  }
}

TEST_F(Qualifier, KnowsWhenTheUserGoesToBed) {
  std::vector<HKSample> samples;
  const auto add = [&](std::int64_t state, const char* start, const char* end) {
    samples.push_back(
        {.sampleType = {}, .start = at(start), .end = at(end), .value = HKSample::Category{state}});
  };
  EXPECT_EQ(typicalSleepTimes(samples, zone_)[0], std::nullopt);
  add(3, "04T23:50", "05T07:00");
  add(3, "06T00:20", "06T07:10");
  add(3, "07T00:10", "07T06:50");
  add(3, "07T14:00", "07T14:30");
  const auto times = typicalSleepTimes(samples, zone_);
  EXPECT_EQ(times[0], std::nullopt) << "nothing says in bed";
  EXPECT_EQ(times[1], (HHMMSS{.h = 0, .m = 10})) << "across midnight; a nap is no night";
}

}  // namespace
}  // namespace velloro
