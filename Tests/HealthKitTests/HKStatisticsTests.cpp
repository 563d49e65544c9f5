#include "HealthKit/HKStatistics.h"
#include "HealthKit/HKUnit.h"
#include "OxHealthKit/QuantityUnits.h"

#include <random>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using namespace platform;

TEST(HKUnit, ConvertsWhatMeasuresTheSame) {
  struct Case {
    double amount;
    const char *from, *to;
    double result;
  };
  const Case cases[] = {{1, "cup_us", "mL", 236.5882365},
                        {8, "fl_oz_us", "cup_us", 1},
                        {100, "kcal", "kJ", 418.4},
                        {100, "Cal", "kcal", 100},
                        {1, "mi", "km", 1.609344},
                        {98.6, "degF", "degC", 37},
                        {0, "degC", "K", 273.15},
                        {5.5, "mmol<180.1558800000541>/L", "mg/dL", 99.08573400002976},
                        {40, "mL/min·kg", "mL/(kg*min)", 40},
                        {120, "count/min", "Hz", 2},
                        {9.81, "m/s^2", "cm/s^2", 981},
                        {1500, "mcg", "mg", 1.5},
                        {0.97, "%", "count", 0.97},
                        {2, "hr", "min", 120}};
  for (const auto& [amount, from, to, result] : cases) {
    const auto converted = HKUnit::fromString(from)->convert(amount, *HKUnit::fromString(to));
    ASSERT_TRUE(converted) << from << " to " << to;
    EXPECT_NEAR(*converted, result, 1e-9 * std::abs(result) + 1e-12) << from << " to " << to;
    const auto back = HKUnit::fromString(to)->convert(*converted, *HKUnit::fromString(from));
    EXPECT_NEAR(*back, amount, 1e-9 * std::abs(amount) + 1e-12) << to << " to " << from;
  }
  for (const char* text : {"", "/", "furlong", "km^x", "g<5>", "mol<0>", "kmi", "m^99", "m m"}) {
    EXPECT_FALSE(HKUnit::fromString(text)) << text;
  }
  EXPECT_FALSE(HKUnit::fromString("L")->convert(1, *HKUnit::fromString("kg")));
  using Quantity = OxHKSampleType::QuantityType;
  for (const auto type : allCases<Quantity>()) {
    EXPECT_TRUE(measures(type, usualUnit(type))) << rawValue(type);
  }
  EXPECT_FALSE(measures(Quantity::dietaryWater, "kcal"));
}

/// Second by second: the most trusted samples that cover a second have it.
double plainSum(const std::vector<HKMeasured>& samples, Date from, Date to) {
  double sum = 0;
  for (Date second = from; second < to; second = second + 1) {
    std::optional<std::int64_t> best;
    const auto covers = [&](const HKMeasured& one) {
      return one.start <= second && second < one.end;
    };
    for (const auto& one : samples) {
      if (covers(one)) best = std::min(best.value_or(one.rank), one.rank);
    }
    for (const auto& one : samples) {
      const double length = one.end.timeIntervalSince(one.start);
      if (covers(one) && one.rank == best) sum += one.value / length;
      if (length == 0 && one.start == second) sum += one.value;
    }
  }
  return sum;
}

TEST(HKStatistics, CountEachMomentOnce) {
  std::mt19937 random(7);
  const auto number = [&](int most) { return static_cast<int>(random() % (most + 1U)); };
  const Date day = Date::since1970(1709766000);
  for (int round = 0; round < 400; ++round) {
    std::vector<HKMeasured> samples;
    for (int count = number(12); count >= 0; --count) {
      const Date start = day + (number(200) - 50);
      samples.push_back({start, start + number(3) * number(20), 1.0 + number(99), number(3)});
    }
    const Date to = day + 100;
    EXPECT_NEAR(sumOnce(samples, day, to), plainSum(samples, day, to), 1e-6) << round;
  }
}

TEST(HKStatistics, IntervalsFollowTheCalendar) {
  using Unit = HKStatisticsInterval::Unit;
  const TimeZone berlin = TimeZone::fromIdentifier("Europe/Berlin").value();
  const Date anchor = Date::fromISO8601("2024-01-31T02:30:00+01:00").value();
  for (const Unit unit : {Unit::day, Unit::month, Unit::year}) {
    const HKStatisticsInterval interval{unit, berlin};
    for (std::int64_t index = -400; index < 400; ++index) {
      const Date start = interval.boundary(anchor, index);
      ASSERT_LT(start, interval.boundary(anchor, index + 1));
      EXPECT_EQ(interval.indexOf(anchor, start), index);
      EXPECT_EQ(interval.indexOf(anchor, interval.boundary(anchor, index + 1) - 1), index);
    }
  }
}

}  // namespace
}  // namespace velloro
