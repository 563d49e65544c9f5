#include "VelloroCore/Types/QuantityOptions.h"

#include "OxDateTime/HHMMSS.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>

namespace velloro {
namespace {

using Items = std::initializer_list<ValueRange::RangeItem>;

constexpr std::size_t periods = 5;

/// Where a range begins, and the items that a day has, that a week adds to those, and so on.
struct Shape {
  double from;
  Items items[periods];
};

struct Row {
  std::initializer_list<HealthType> types;
  std::initializer_list<TypeUnit> units;
  Shape shape;
  double defaults[periods];
};

using enum HealthType;
using enum TypeUnit;

// One line tells where a range begins and the items of a day, a week, … a year; the next one their
// defaults.
// clang-format off

// Nutrients by the step of small amounts; in even tens a whole day goes in one step.
constexpr Shape tenths = {0.1, {{{10, 0.1}, {50, 0.5}}, {{250, 1}}, {{500, 5}}, {{1000, 10}}, {{10000, 50}}}};
constexpr Shape halves = {0.5, {{{20, 0.5}, {100, 1}}, {{500, 5}}, {{1000, 10}}, {{2000, 25}}, {{20000, 250}}}};
constexpr Shape ones = {1, {{{100, 1}, {500, 5}}, {{2500, 25}}, {{5000, 50}}, {{10000, 100}}, {{100000, 1000}}}};
constexpr Shape fives = {5, {{{500, 5}, {2000, 10}}, {{15000, 100}}, {{30000, 250}}, {{60000, 500}}, {{600000, 5000}}}};
constexpr Shape tens = {10, {{{2000, 10}, {10000, 50}}, {{70000, 500}}, {{140000, 1000}}, {{300000, 2500}}, {{3000000, 10000}}}};
constexpr Shape evenTens = {10, {{{5000, 10}}, {{20000, 50}}, {{40000, 100}}, {{80000, 250}}, {{800000, 2500}}}};

constexpr Row rows[] = {
    {{runOrWalk}, {steps},
     {100, {{{2000, 100}, {20000, 500}, {50000, 1000}}, {{200000, 2500}}, {{400000, 5000}}, {{600000, 10000}}, {{10000000, 10000}}}},
     {5000, 50000, 100000, 200000, 1000000}},
    {{runOrWalk, wheelchairDistance, workout}, {distanceKm},
     {1, {{{5, 0.1}, {20, 0.5}, {250, 1}}, {{700, 5}}, {{1500, 10}}, {{3000, 25}}, {{20000, 500}}}},
     {5, 35, 70, 150, 2000}},
    {{runOrWalk, wheelchairDistance, workout}, {distanceMiles},
     {0.5, {{{5, 0.1}, {25, 0.5}, {250, 1}}, {{500, 5}}, {{1000, 10}}, {{1000, 25}}, {{15000, 500}}}},
     {3.5, 25, 50, 100, 1500}},
    {{workout}, {distanceMeters, distanceYards},
     {25, {{{2500, 25}}, {{25000, 250}}, {{50000, 500}}, {{100000, 1000}}, {{1000000, 10000}}}},
     {1000, 7000, 14000, 30000, 370000}},
    {{workout}, {durationMinutes},
     {1, {{{30, 1}, {300, 5}}, {{3000, 10}}, {{6000, 30}}, {{12000, 60}}, {{100000, 1000}}}},
     {20, 140, 280, 600, 7200}},
    {{cycle}, {distanceKm, distanceMiles},
     {1, {{{250, 1}}, {{3000, 25}}, {{6000, 100}}, {{10000, 250}}, {{100000, 2500}}}},
     {5, 70, 150, 300, 2000}},
    {{swimDistance}, {distanceMeters, distanceYards},
     {25, {{{5000, 25}, {10000, 50}}, {{150000, 1000}}, {{300000, 5000}}, {{500000, 10000}}, {{4000000, 25000}}}},
     {200, 2000, 4000, 6000, 70000}},
    {{climbFlights}, {flights},
     {1, {{{50, 1}, {200, 5}, {2000, 10}}, {{15000, 250}}, {{30000, 500}}, {{60000, 5000}}, {{750000, 10000}}}},
     {10, 150, 300, 600, 4000}},
    {{burnActiveEnergy, dietaryEnergy, workout}, {calories},
     {10, {{{5000, 10}}, {{10000, 50}, {25000, 500}, {70000, 1000}}, {{150000, 2500}}, {{300000, 5000}}, {{2000000, 10000}}}},
     {250, 3500, 7000, 15000, 100000}},
    {{burnActiveEnergy, dietaryEnergy, workout}, {kilojoules},
     {50, {{{20000, 50}}, {{50000, 1000}, {100000, 2500}, {300000, 5000}}, {{600000, 10000}}, {{1000000, 25000}}, {{8000000, 50000}}}},
     {1000, 7500, 15000, 30000, 350000}},
    {{standHours, rollHours}, {durationHours},
     {1, {{{24, 1}}, {{168, 6}}, {{336, 12}}, {{720, 12}}, {{7200, 240}}}},
     {12, 84, 168, 360, 3600}},
    {{standMinutes, moveMinutes}, {durationMinutes},
     {5, {{{3600, 5}}, {{25000, 250}}, {{50000, 1000}}, {{100000, 5000}}, {{1000000, 50000}}}},
     {50, 350, 700, 1500, 20000}},
    {{exercise}, {durationMinutes},
     {5, {{{300, 5}}, {{3000, 10}}, {{6000, 30}}, {{12000, 60}}, {{100000, 1000}}}},
     {30, 30, 30, 30, 30}},
    {{sleep, inBed}, {durationHours},
     {0.25, {{{15, 0.25}}, {{100, 1}}, {{200, 1}}, {{500, 5}}, {{4000, 25}}}},
     {8, 56, 112, 240, 2400}},
    {{wheelchairPushes}, {pushes},
     {250, {{{20000, 250}}, {{300000, 2500}}, {{600000, 5000}}, {{1000000, 25000}}, {{7000000, 50000}}}},
     {1000, 15000, 30000, 50000, 350000}},
    {{dietaryDrinkWater}, {fluidOuncesUS},
     {4, {{{300, 4}}, {{2100, 25}}, {{4200, 100}}, {{8400, 200}}, {{84000, 1000}}}},
     {64, 450, 900, 2000, 20000}},
    {{dietaryDrinkWater}, {litres},
     {0.1, {{{8, 0.1}}, {{56, 0.5}}, {{100, 1}}, {{200, 5}}, {{2000, 50}}}},
     {2, 10, 20, 50, 500}},
    {{dietaryDrinkWater}, {millilitres},
     {50, {{{8000, 50}}, {{56000, 500}}, {{100000, 1000}}, {{200000, 5000}}, {{2000000, 50000}}}},
     {2000, 10000, 20000, 50000, 500000}},
    {{dietaryDrinkWater}, {cupsUS},
     {1, {{{40, 1}}, {{280, 1}}, {{560, 5}}, {{1200, 10}}, {{12000, 50}}}},
     {8, 56, 112, 240, 2900}},
    {{alcoholConsumption}, {drinks},
     {1, {{{20, 1}}, {{150, 1}}, {{300, 1}}, {{600, 10}}, {{7000, 50}}}},
     {5, 10, 20, 40, 500}},

    {{dietarySugar, dietaryProtein}, {grams},
     {5, {{{100, 1}, {1000, 5}}, {{10000, 50}}, {{20000, 100}}, {{30000, 1000}}, {{300000, 10000}}}},
     {40, 40, 40, 40, 40}},
    {{dietaryCarbohydrates}, {grams}, evenTens, {300, 2100, 4200, 9000, 110000}},
    {{dietaryCholesterol}, {milligrams}, evenTens, {300, 2100, 4200, 9000, 110000}},
    {{dietaryFatTotal, dietaryFatMonounsaturated, dietaryFatPolyunsaturated, dietaryFatSaturated}, {grams},
     {1, {{{300, 1}, {1000, 5}}, {{5000, 25}}, {{10000, 50}}, {{20000, 100}}, {{200000, 1000}}}},
     {60, 420, 840, 1800, 22000}},
    {{dietaryCaffeine}, {milligrams}, fives, {250, 1750, 3500, 7500, 90000}},
    {{dietaryFiber}, {grams}, ones, {25, 175, 350, 750, 9100}},
    {{dietarySodium}, {milligrams}, tens, {700, 4900, 9800, 21000, 255000}},
    {{dietaryCalcium}, {milligrams}, tens, {1000, 7000, 14000, 30000, 370000}},
    {{dietaryIron}, {milligrams}, ones, {12, 84, 170, 360, 4400}},
    {{dietaryMagnesium}, {milligrams}, tens, {350, 2450, 4900, 10500, 128000}},
    {{dietaryVitaminA}, {micrograms}, tens, {800, 5600, 11000, 24000, 292500}},
    {{dietaryVitaminB6}, {milligrams}, tenths, {1.5, 10.5, 21, 45, 550}},
    {{dietaryVitaminB12}, {micrograms}, tenths, {2.4, 17, 33.5, 72, 880}},
    {{dietaryVitaminC}, {milligrams}, fives, {90, 630, 1260, 2700, 33000}},
    {{dietaryVitaminD}, {micrograms}, ones, {15, 105, 210, 450, 5500}},
    {{dietaryVitaminE}, {milligrams}, ones, {15, 105, 210, 450, 5500}},
    {{dietaryVitaminK}, {micrograms}, fives, {130, 910, 1820, 3900, 47500}},
    {{dietaryZinc}, {milligrams}, ones, {10, 70, 140, 300, 3650}},
    {{dietaryFolate}, {micrograms}, tens, {400, 2800, 5600, 12000, 145000}},
    {{dietaryPotassium}, {milligrams},
     {50, {{{10000, 50}, {50000, 250}}, {{300000, 2500}}, {{600000, 5000}}, {{1500000, 10000}}, {{15000000, 100000}}}},
     {4700, 33000, 65000, 140000, 1700000}},
    {{dietaryRiboflavin}, {milligrams}, tenths, {1.3, 9.1, 18, 39, 475}},
    {{dietaryThiamin}, {milligrams}, tenths, {1.2, 8.4, 17, 36, 440}},
    {{dietarySelenium}, {micrograms}, fives, {70, 490, 980, 2100, 25500}},
    {{dietaryPhosphorus}, {milligrams}, tens, {1000, 7000, 14000, 30000, 370000}},
    {{dietaryNiacin}, {milligrams}, ones, {16, 110, 225, 480, 5800}},
    {{dietaryManganese}, {milligrams}, halves, {5.5, 39, 77, 165, 2000}},
    {{dietaryIodine}, {micrograms}, fives, {150, 1050, 2100, 4500, 55000}},
    {{dietaryCopper}, {milligrams}, tenths, {1.7, 12, 24, 51, 620}},
    {{dietaryChromium}, {micrograms}, ones, {35, 245, 490, 1050, 13000}},
    {{dietaryChloride}, {milligrams}, tens, {800, 5600, 11000, 24000, 292500}},
    {{dietaryBiotin}, {micrograms}, ones, {30, 210, 420, 900, 11000}},
    {{dietaryMolybdenum}, {micrograms}, ones, {45, 315, 625, 1350, 16000}},
};

// A deficit can be negative, so its ranges begin at different depths and share no items.
constexpr Shape deficitPerDay = {-5000, {{{5000, 10}}}};
constexpr Shape deficitPerWeek = {-50000, {{{-25000, 1000}, {-5000, 100}, {5000, 10}, {25000, 100}, {50000, 1000}}}};
constexpr Shape deficitPerDayInKilojoules = {-20000, {{{20000, 50}}}};

// What is timed, in minutes; where it is counted in seconds, short durations come in finer steps.
constexpr Shape timed = {1, {{{60, 1}, {120, 5}, {1200, 15}}, {{6000, 60}}, {{12000, 120}}, {{24000, 600}}, {{360000, 6000}}}};
constexpr double firstSeconds = 5;
constexpr Items fineSeconds = {{180, 15}, {300, 30}};
// clang-format on

constexpr HHMMSS usualBedtime{.h = 22};

std::size_t indexOf(TaskFrequencyPeriodType period) {
  return static_cast<std::size_t>(period);
}

ValueRange makeRange(TypeUnit unit, const Shape& shape, TaskFrequencyPeriodType longest) {
  ValueRange range{.unit = unit, .from = shape.from};
  for (std::size_t period = 0; period <= indexOf(longest); ++period) {
    const Items& items = shape.items[period];
    range.items.insert(range.items.end(), items.begin(), items.end());
  }
  return range;
}

/// Absent for what is not timed.
std::optional<double> usualMinutes(HealthType type) {
  if (type == mindfulMinutes) return 5;
  if (type == toothbrushingEventBrush) return 3;
  return std::nullopt;
}

std::optional<ValueRange> timedOptions(TypeUnit unit, TaskFrequencyPeriodType measurementDuration,
                                       double defaultMinutes) {
  auto range = optionsForTimedTasks(unit, measurementDuration);
  if (range) range->_defaultValue = convert(defaultMinutes, durationMinutes, unit);
  return range;
}

std::optional<ValueRange> deficitOptions(TypeUnit unit,
                                         TaskFrequencyPeriodType measurementDuration) {
  const bool isDay = measurementDuration == TaskFrequencyPeriodType::day;
  const bool isWeek = measurementDuration == TaskFrequencyPeriodType::week;
  constexpr auto onlyItems = TaskFrequencyPeriodType::day;
  if (unit == calories && isDay) return makeRange(unit, deficitPerDay, onlyItems);
  if (unit == calories && isWeek) return makeRange(unit, deficitPerWeek, onlyItems);
  if (unit == kilojoules && isDay) return makeRange(unit, deficitPerDayInKilojoules, onlyItems);
  return std::nullopt;
}

std::optional<ValueRange> tabulatedOptions(HealthType type, TypeUnit unit,
                                           TaskFrequencyPeriodType measurementDuration) {
  const auto* const row = std::ranges::find_if(rows, [&](const Row& candidate) {
    return std::ranges::find(candidate.types, type) != candidate.types.end() &&
           std::ranges::find(candidate.units, unit) != candidate.units.end();
  });
  if (row == std::end(rows)) return std::nullopt;
  ValueRange range = makeRange(unit, row->shape, measurementDuration);
  range._defaultValue = row->defaults[indexOf(measurementDuration)];
  return range;
}

}  // namespace

std::optional<ValueRange> quantityOptions(HealthType type, std::optional<TypeUnit> unit,
                                          TaskFrequencyPeriodType measurementDuration) {
  if (const auto minutes = usualMinutes(type)) {
    return timedOptions(unit.value_or(durationMinutes), measurementDuration, *minutes);
  }
  if (!unit) return std::nullopt;
  if (type == energyDeficit) return deficitOptions(*unit, measurementDuration);
  if (type == bedtime && *unit == timeOfDay) {
    return ValueRange{.unit = timeOfDay,
                      ._defaultValue = static_cast<double>(usualBedtime.intValue())};
  }
  return tabulatedOptions(type, *unit, measurementDuration);
}

std::optional<ValueRange> optionsForTimedTasks(TypeUnit unit,
                                               TaskFrequencyPeriodType measurementDuration) {
  if (!isDuration(unit)) return std::nullopt;
  ValueRange range = makeRange(unit, timed, measurementDuration);
  const auto inUnit = [&](double minutes) { return *convert(minutes, durationMinutes, unit); };
  range.from = inUnit(*range.from);
  for (auto& item : range.items) item = {.to = inUnit(item.to), .step = inUnit(item.step)};
  if (unit == durationSeconds) {
    range.from = firstSeconds;
    range.items.insert(range.items.begin(), fineSeconds.begin(), fineSeconds.end());
  }
  return range;
}

}  // namespace velloro
