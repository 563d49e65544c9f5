#include "Foundation/Process/VirtualEnvironment.h"
#include "Health/AutomaticTaskTypeQualifierOperation.h"
#include "OxHealthKit/HKObjects.h"
#include "OxKit/Numbers.h"

#include <algorithm>
#include <random>
#include <set>
#include <vector>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using Quantity = OxHKSampleType::QuantityType;
using Category = OxHKSampleType::CategoryType;

/// A sample in minutes since the 6th of March 2024 in Berlin, of which the 7th is read.
struct Plain {
  OxHKSampleType type;
  int start = 0, end = 0;
  int amount = 0;  ///< Tenths of a quantity, or the state of a category.
};

constexpr int day = 1440;

/// Random samples of three days, read by the operation and by plain loops over them.
class QualifierSweep : public testing::TestWithParam<unsigned> {
 protected:
  QualifierSweep() {
    for (int count = pick(60); count > 0; --count) {
      const int start = pick(3 * day), length = pick(4) == 0 ? 0 : 1 + pick(200);
      add({types()[static_cast<std::size_t>(pick(5))], start, start + length, pick(6)});
    }
  }

  int pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
  static std::vector<OxHKSampleType> types() {
    return {OxHKSampleType::quantity(Quantity::dietaryWater),
            OxHKSampleType::category(Category::mindfulSession),
            OxHKSampleType::category(Category::sleepAnalysis),
            OxHKSampleType::category(Category::sleepAnalysis),
            OxHKSampleType::category(Category::handwashingEvent)};
  }
  static Date at(int minute) {
    return Date::fromISO8601("2024-03-06T00:00:00+01:00").value() + minute * 60;
  }
  void add(const Plain& plain) {
    samples_.push_back(plain);
    HKSample sample{
        .sampleType = hkObjectType(plain.type),
        .start = at(plain.start),
        .end = at(plain.end),
        .source = {.name = {},
                   .bundleIdentifier = std::string(1, static_cast<char>('a' + pick(3)))}};
    if (plain.type == types().front()) {
      sample.value = HKQuantity{*HKUnit::fromString("L"), plain.amount / 10.0};
    } else {
      sample.value = HKSample::Category{plain.amount};
    }
    ASSERT_TRUE(store_->save({std::move(sample)}));
  }
  [[nodiscard]] double read(HealthType type, TypeUnit unit, TypeSpeeds speeds = {},
                            double target = 1e6) const {
    auto operation = std::make_shared<AutomaticTaskTypeQualifierOperation>();
    operation->type = AutomaticTaskType(TaskType{type});
    operation->type.quantity = target;
    operation->type.unit = unit;
    operation->type.speeds = speeds;
    operation->period = TaskFrequencyPeriod::fromDate(TaskFrequencyPeriodType::day, {2024, 3, 7},
                                                      DayOfWeek::sunday, {});
    operation->timeZone = TimeZone::fromIdentifier("Europe/Berlin").value();
    operation->store = store_;
    operation->currentDate = at(now_);
    operation->start();
    operation->waitUntilFinished();
    return operation->result.value().value().progress.base.currentValue(at(now_));
  }
  /// Those of a type that touch the day; a moment at its end belongs to the next.
  [[nodiscard]] std::vector<Plain> ofTheDay(const OxHKSampleType& type) const {
    return found(type, [](const Plain& one) {
      const bool isMoment = one.start == one.end;
      return one.start < 2 * day && (isMoment ? one.start >= day : one.end > day);
    });
  }
  template <typename Takes>
  [[nodiscard]] std::vector<Plain> found(const OxHKSampleType& type, Takes takes) const {
    std::vector<Plain> found;
    for (const Plain& one : samples_) {
      if (one.type == type && takes(one)) found.push_back(one);
    }
    return found;
  }
  static int minutesOf(const std::vector<Plain>& samples) {
    std::set<int> minutes;
    for (const Plain& one : samples) {
      for (int minute = one.start; minute < one.end; ++minute) minutes.insert(minute);
    }
    return static_cast<int>(minutes.size());
  }

  const VirtualEnvironment environment_;
  std::mt19937 random_{GetParam()};
  std::vector<Plain> samples_;
  int now_ = 3 * day;
  const std::shared_ptr<HKHealthStore> store_ = std::make_shared<HKHealthStore>(
      environment_.directories().temporary / "health.sqlite", "velloro.app");
};

TEST_P(QualifierSweep, AddsUpAndCountsAsPlainLoopsDo) {
  (void)store_->save({{.sampleType = hkObjectType(types().back()),  // there are health data
                       .start = at(-day),
                       .end = at(-day),
                       .value = HKSample::Category{0}}});
  int tenths = 0;
  for (const Plain& one : ofTheDay(types()[0])) tenths += one.amount;
  EXPECT_NEAR(read(HealthType::dietaryDrinkWater, TypeUnit::litres), tenths / 10.0, 1e-9);
  EXPECT_NEAR(read(HealthType::mindfulMinutes, TypeUnit::durationMinutes),
              minutesOf(ofTheDay(types()[1])), 1e-4);
  EXPECT_EQ(read(HealthType::handwashingEvent, TypeUnit::durationMinutes),
            static_cast<double>(ofTheDay(types()[4]).size()));
}

TEST_P(QualifierSweep, SeesNightsAsPlainLoopsDo) {
  (void)store_->save({{.sampleType = hkObjectType(types().back()),
                       .start = at(-day),
                       .end = at(-day),
                       .value = HKSample::Category{0}}});
  const std::pair<TypeSpeed, int> stages[] = {{TypeSpeed::inBed, 0},
                                              {TypeSpeed::sleepAsleep, 1},
                                              {TypeSpeed::sleepCore, 3},
                                              {TypeSpeed::sleepDeep, 4},
                                              {TypeSpeed::sleepREM, 5}};
  for (int round = 0; round < 8; ++round) {
    TypeSpeeds speeds;
    std::set<int> states;
    for (const auto& [speed, state] : stages) {
      if (pick(2) == 0) continue;
      speeds.insert(speed);
      states.insert(state);
    }
    if (states.empty()) continue;
    constexpr int sixHours = 360;
    const auto night = found(types()[2], [&](const Plain& one) {
      return states.contains(one.amount) && one.start >= day - sixHours &&
             one.start < 2 * day - sixHours;
    });
    EXPECT_EQ(read(HealthType::sleep, TypeUnit::durationHours, speeds),
              roundToPlaces(minutesOf(night) / 60.0, 4));
  }
}

TEST_P(QualifierSweep, KnowsBedtimesAsPlainLoopsDo) {
  (void)store_->save({{.sampleType = hkObjectType(types().back()),
                       .start = at(-day),
                       .end = at(-day),
                       .value = HKSample::Category{0}}});
  struct Rule {
    TypeSpeed speed;
    bool isStart, isAsleep, isBefore;
  };
  constexpr Rule rules[] = {
      {TypeSpeed::asleepBefore, true, true, true}, {TypeSpeed::inBedBefore, true, false, true},
      {TypeSpeed::asleepAfter, true, true, false}, {TypeSpeed::inBedAfter, true, false, false},
      {TypeSpeed::awakeBefore, false, true, true}, {TypeSpeed::outOfBedBefore, false, false, true},
      {TypeSpeed::awakeAfter, false, true, false}, {TypeSpeed::outOfBedAfter, false, false, false}};
  for (const auto& [speed, isStart, isAsleep, isBefore] : rules) {
    const int minute = pick(day);
    now_ = day + pick(2 * day);
    const int target = (isStart ? day : 2 * day) + minute;
    auto night = found(types()[2], [&](const Plain& one) {
      const bool isWanted = isAsleep ? one.amount != 0 && one.amount != 2 : one.amount == 0;
      return isWanted && one.start < target + 720 &&
             (one.start == one.end ? one.start >= target - 720 : one.end > target - 720);
    });
    std::ranges::sort(night, {}, &Plain::start);
    std::vector<std::pair<int, int>> segments;
    for (const Plain& one : night) {
      if (!segments.empty() && one.start - segments.back().second < 120) {
        segments.back().second = std::max(segments.back().second, one.end);
      } else {
        segments.emplace_back(one.start, one.end);
      }
    }
    const bool isOver = isStart || (!segments.empty() && now_ - segments.back().second > 30);
    const bool qualifies = isOver && std::ranges::any_of(segments, [&](const auto& segment) {
                             const int moment = isStart ? segment.first : segment.second;
                             return isBefore ? target - 720 < moment && moment < target
                                             : target < moment && moment < target + 720;
                           });
    EXPECT_EQ(read(HealthType::bedtime, TypeUnit::durationHours, {speed}, minute * 60.0),
              qualifies ? 1 : 0)
        << rawValue(speed) << " " << minute;
  }
}

INSTANTIATE_TEST_SUITE_P(Samples, QualifierSweep, testing::Range(1U, 41U));

}  // namespace
}  // namespace velloro
