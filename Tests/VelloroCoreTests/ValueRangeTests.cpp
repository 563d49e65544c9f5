#include "Foundation/Text/String.h"
#include "VelloroCore/Types/QuantityOptions.h"
#include "VelloroCore/Types/TaskType.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using enum TaskFrequencyPeriodType;
using Period = TaskFrequencyPeriodType;

constexpr Period allPeriods[] = {day, week, fortnight, month, year};

TEST(ValueRange, StepsThroughItsItems) {
  struct Case {
    ValueRange range;
    std::vector<double> values;
    double defaultValue;
  };
  const auto unit = TypeUnit::distanceKm;
  const Case cases[] = {
      {{.unit = unit, .from = 1, .items = {{2, 0.5}, {4, 1}}}, {1, 1.5, 2, 3, 4}, 1},
      {{.unit = unit, .from = -2, .items = {{0, 1}, {1, 0.75}}}, {-2, -1, 0, 0.75, 1}, -2},
      {{.unit = unit, .from = 5, .items = {{10, 5}, {10, 25}}}, {5, 10}, 5},
      {{.unit = unit, .from = 3, ._defaultValue = 7}, {3}, 7},
      {{.unit = unit, .from = 3, .items = {{2, 1}, {9, 0}}}, {3}, 3},
      {{.unit = unit, .from = 3, ._specificValues = {7, 1}}, {1, 7}, 3},
      {{.unit = unit, ._specificValues = {6, 4}}, {4, 6}, 4},
      {{.unit = unit, .from = 1, .items = {{3, 1}}, ._specificValues = {2, 2.5, 9}},
       {1, 2, 2.5, 3, 9},
       1},
      {{.unit = unit, ._defaultValue = 5}, {}, 5}};
  for (const auto& [range, values, defaultValue] : cases) {
    const auto first = values.empty() ? std::nullopt : std::optional(values.front());
    EXPECT_EQ(range.defaultValue(), defaultValue);
    EXPECT_EQ(range.sortedValues(), values);
    EXPECT_EQ(range.count(), values.size());
    EXPECT_EQ(range.first(), first);
    EXPECT_EQ(range.last(), values.empty() ? std::nullopt : std::optional(values.back()));
    for (std::size_t i = 0; i + 1 < values.size(); ++i) {
      EXPECT_EQ(range.bigger(values[i]), values[i + 1]);
      EXPECT_EQ(range.smaller(values[i + 1]), values[i]);
    }
  }
}

TEST(ValueRange, FindsAValueThatIsNotOnIt) {
  const ValueRange range{.unit = TypeUnit::distanceKm, .from = 1, .items = {{5, 0.1}, {20, 0.5}}};
  struct Case {
    double value;
    std::optional<double> smaller, bigger;
  };
  const double infinite = std::numeric_limits<double>::infinity();
  const Case cases[] = {{1.25, 1.2, 1.3},          {7.2, 7, 7.5},         {1, std::nullopt, 1.1},
                        {0.3, std::nullopt, 1},    {20, 19.5, {}},        {1e300, 20, {}},
                        {1 + 0.1 + 0.1, 1.1, 1.3}, {2.9999999, 2.9, 3.1}, {infinite, 20, {}},
                        {-infinite, {}, 1},        {std::nan(""), {}, {}}};
  for (const auto& [value, smaller, bigger] : cases) {
    EXPECT_EQ(range.smaller(value), smaller) << value;
    EXPECT_EQ(range.bigger(value), bigger) << value;
  }
}

TEST(ValueRange, ItsThousandthStepIsStillADecimal) {
  const ValueRange range{.unit = TypeUnit::distanceKm, .from = 1, .items = {{1001, 0.1}}};
  const auto values = range.sortedValues();
  ASSERT_EQ(values.size(), 10001U);
  EXPECT_EQ(values[1000], 101);
  for (const double value : values) {
    EXPECT_EQ(value, std::stod(stringWithFormat("%.1f", value)));
  }
}

TEST(QuantityOptions, AreThoseOfTheCatalogue) {
  struct Case {
    HealthType type;
    std::optional<TypeUnit> unit;
    Period period;
    double first, last, defaultValue;
  };
  using enum HealthType;
  const Case cases[] = {{sleep, TypeUnit::durationHours, day, 0.25, 15, 8},
                        {runOrWalk, TypeUnit::steps, year, 100, 10000000, 1000000},
                        {runOrWalk, TypeUnit::distanceMiles, month, 0.5, 1000, 100},
                        {wheelchairDistance, TypeUnit::distanceKm, week, 1, 700, 35},
                        {workout, TypeUnit::kilojoules, fortnight, 50, 600000, 15000},
                        {workout, TypeUnit::distanceYards, day, 25, 2500, 1000},
                        {exercise, TypeUnit::durationMinutes, year, 5, 100000, 30},
                        {dietaryDrinkWater, TypeUnit::litres, week, 0.1, 56, 10},
                        {dietaryProtein, TypeUnit::grams, month, 5, 30000, 40},
                        {energyDeficit, TypeUnit::calories, day, -5000, 5000, -5000},
                        {energyDeficit, TypeUnit::calories, week, -50000, 50000, -50000},
                        {energyDeficit, TypeUnit::kilojoules, day, -20000, 20000, -20000},
                        {mindfulMinutes, std::nullopt, day, 1, 1200, 5},
                        {mindfulMinutes, TypeUnit::durationSeconds, week, 5, 360000, 300},
                        {toothbrushingEventBrush, TypeUnit::durationHours, day, 1.0 / 60, 20, 0.05},
                        {alcoholConsumption, TypeUnit::drinks, day, 1, 20, 5},
                        {dietaryVitaminB12, TypeUnit::micrograms, day, 0.1, 50, 2.4}};
  for (const auto& [type, unit, period, first, last, defaultValue] : cases) {
    const auto range = quantityOptions(type, unit, period);
    ASSERT_TRUE(range) << rawValue(type);
    EXPECT_EQ(range->first(), first) << rawValue(type);
    EXPECT_EQ(range->last(), last) << rawValue(type);
    EXPECT_EQ(range->defaultValue(), defaultValue) << rawValue(type);
  }
  const auto bedtimes = quantityOptions(bedtime, TypeUnit::timeOfDay);
  EXPECT_EQ(bedtimes->defaultValue(), 22 * 3600);
  EXPECT_EQ(bedtimes->count(), 0U);
}

TEST(QuantityOptions, AreAbsentWhereThereIsNothingToChoose) {
  using enum HealthType;
  EXPECT_FALSE(quantityOptions(workout, std::nullopt));
  EXPECT_FALSE(quantityOptions(energyDeficit, TypeUnit::calories, fortnight));
  EXPECT_FALSE(quantityOptions(energyDeficit, TypeUnit::kilojoules, week));
  EXPECT_FALSE(optionsForTimedTasks(TypeUnit::calories));
}

/// The two that the house's tables give a default beside their steps.
bool hasDefaultBesideItsSteps(HealthType type, TypeUnit unit, Period period) {
  const bool countsMinutes = type == HealthType::standMinutes || type == HealthType::moveMinutes;
  return period == year && (countsMinutes || unit == TypeUnit::fluidOuncesUS);
}

void expectSoundRange(const ValueRange& range) {
  const auto values = range.sortedValues();
  ASSERT_EQ(values.size(), range.count());
  EXPECT_EQ(values.front(), range.from);
  EXPECT_EQ(values.back(), range.items.back().to);
  EXPECT_FALSE(range.bigger(values.back()) || range.smaller(values.front()));
  for (std::size_t i = 1; i < values.size(); ++i) {
    ASSERT_LT(values[i - 1], values[i]);
    ASSERT_EQ(range.smaller(values[i]), values[i - 1]);
    ASSERT_EQ(range.bigger(values[i - 1]), values[i]);
  }
}

TEST(QuantityOptions, AreSoundForEveryTypeUnitAndPeriod) {
  std::size_t ranges = 0;
  for (const HealthType type : allCases<HealthType>()) {
    for (const TypeUnit unit : allCases<TypeUnit>()) {
      std::optional<ValueRange> shorter;
      for (const Period period : allPeriods) {
        SCOPED_TRACE(testing::Message()
                     << rawValue(type) << " in " << rawValue(unit) << " per " << rawValue(period));
        const auto range = quantityOptions(type, unit, period);
        const auto offered = TaskType(type).unitOptions();
        const bool isOffered = std::ranges::find(offered, unit) != offered.end() ||
                               (TaskType(type).canBeTimed() && isDuration(unit));
        if (type != HealthType::energyDeficit) {
          EXPECT_EQ(range.has_value(), isOffered);
        }
        if (!range || type == HealthType::bedtime) continue;
        ++ranges;
        expectSoundRange(*range);
        const auto values = range->sortedValues();
        const double usual = range->defaultValue().value();
        EXPECT_EQ(std::ranges::binary_search(values, usual),
                  !hasDefaultBesideItsSteps(type, unit, period))
            << usual;
        if (shorter && type != HealthType::energyDeficit) {
          EXPECT_TRUE(std::ranges::includes(values, shorter->sortedValues()));
          EXPECT_GE(usual, shorter->defaultValue());
        }
        shorter = range;
      }
    }
  }
  EXPECT_EQ(ranges, 5 * 76 + 3U) << "units with steps, and those of the deficit";
}

}  // namespace
}  // namespace velloro
