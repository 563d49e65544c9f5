#include "VelloroCore/Types/AutomaticTaskType.h"

#include "Foundation/Text/String.h"
#include "OxHealthKit/OxHKQuantity.h"
#include "OxKit/Numbers.h"
#include "VelloroCore/Frequency/TaskFrequency.h"

#include <algorithm>
#include <utility>

namespace velloro {
namespace {

using Period = TaskFrequencyPeriodType;

constexpr TypeSpeeds timerSpeeds{TypeSpeed::timed};

constexpr double litresPerGlass = 0.25;
constexpr double millilitresPerGlass = 250;
constexpr double fluidOuncesPerGlass = 8;
constexpr std::int64_t brushingsPerDay = 2;
constexpr std::int64_t handwashingsPerDay = 6;

std::int64_t clamped(double count, std::int64_t highest) {
  constexpr auto lowest = static_cast<double>(TaskFrequency::minPartialCompletions);
  if (!(count > lowest)) return TaskFrequency::minPartialCompletions;
  return static_cast<std::int64_t>(std::min(count, static_cast<double>(highest)));
}

double glassesOfWater(double quantity, std::optional<TypeUnit> unit) {
  if (unit == TypeUnit::fluidOuncesUS) return roundToPlaces(quantity / fluidOuncesPerGlass, 0);
  if (unit == TypeUnit::litres) return roundToPlaces(quantity / litresPerGlass, 0);
  if (unit == TypeUnit::millilitres) return roundToPlaces(quantity / millilitresPerGlass, 0);
  return unit == TypeUnit::cupsUS ? quantity : 1;
}

bool isOneOf(TaskType type, std::initializer_list<TaskType> types) {
  return std::ranges::find(types, type) != types.end();
}

}  // namespace

AutomaticTaskType::AutomaticTaskType(TaskType taskType, const std::optional<TaskTarget>& target,
                                     std::optional<TypeExtra> typeExtra,
                                     std::optional<DataSource> source)
    : type(taskType), extra(std::move(typeExtra)), dataSource(source) {
  setTaskTarget(target);
}

AutomaticTaskType AutomaticTaskType::timer(double durationPerCompletion,
                                           std::int64_t numPartialCompletions, TypeUnit unit,
                                           std::optional<DataSource> dataSource) {
  AutomaticTaskType timer(TaskType::timer(), TaskTarget{.unit = unit}, {}, dataSource);
  timer.setTimerDuration(durationPerCompletion, numPartialCompletions);
  return timer;
}

std::string AutomaticTaskType::debugDescription() const {
  std::string speedTexts;
  for (const TypeSpeed speed : speeds) {
    speedTexts += (speedTexts.empty() ? "" : ", ") + velloro::debugDescription(speed);
  }
  return "type=" + std::string(type.rawValue()) + stringWithFormat(" quantity=%.15g", quantity) +
         " unit=" + (unit ? velloro::debugDescription(*unit) : "none") + " speeds=[" + speedTexts +
         "] extra=" + (extra ? "(" + extra->debugDescription() + ")" : "none");
}

std::optional<TaskTarget> AutomaticTaskType::taskTarget() const {
  if (!unit) return std::nullopt;
  return TaskTarget{.quantity = quantity, .unit = *unit, .speeds = speeds};
}

void AutomaticTaskType::setTaskTarget(const std::optional<TaskTarget>& target) {
  quantity = target ? target->quantity : 0;
  unit = target ? std::optional(target->unit) : std::nullopt;
  speeds = target ? target->speeds : TypeSpeeds();
}

void AutomaticTaskType::setTimerDuration(double durationPerCompletion,
                                         std::int64_t numPartialCompletions) {
  type = TaskType::timer();
  unit = unit.value_or(TypeUnit::durationSeconds);
  speeds = timerSpeeds;
  const double seconds = durationPerCompletion * static_cast<double>(numPartialCompletions);
  quantity = convertFromTimeInterval(wholeUnlessFractional(seconds), *unit);
}

std::optional<double> AutomaticTaskType::timerDurationPerCompletion(
    std::int64_t numPartialCompletions) const {
  if (!unit) return std::nullopt;
  if (numPartialCompletions < 1) return 0;
  return convertToTimeInterval(quantity, *unit) / static_cast<double>(numPartialCompletions);
}

std::optional<double> AutomaticTaskType::nextQuantity(Period measurementDuration) const {
  const auto range = quantityOptions(measurementDuration);
  return range ? range->bigger(quantity) : std::nullopt;
}

std::optional<double> AutomaticTaskType::previousQuantity(Period measurementDuration) const {
  const auto range = quantityOptions(measurementDuration);
  return range ? range->smaller(quantity) : std::nullopt;
}

std::int64_t AutomaticTaskType::minPartialCompletions() const {
  return TaskFrequency::minPartialCompletions;
}

std::int64_t AutomaticTaskType::maxPartialCompletions(Period measurementDuration) const {
  const std::int64_t cap = TaskFrequency::maxPartialCompletions(measurementDuration);
  const auto healthType = type.healthType();
  if (!healthType) return type == TaskType::timer() ? cap : minPartialCompletions();
  if (isOneOf(*healthType, {HealthType::activity, HealthType::energyDeficit})) {
    return minPartialCompletions();
  }
  const bool comesInParts =
      type.canBeTimed() || isDietary(*healthType) || healthType == HealthType::alcoholConsumption;
  const bool hasNoUnit = !unit || !type.defaultUnit();
  return comesInParts || hasNoUnit ? cap : minPartialCompletions();
}

std::int64_t AutomaticTaskType::defaultPartialCompletions(Period measurementDuration) const {
  const bool countsCups = type == HealthType::dietaryDrinkWater && unit == TypeUnit::cupsUS;
  if (!countsCups) return minPartialCompletions();
  return clamped(quantity, maxPartialCompletions(measurementDuration));
}

std::int64_t AutomaticTaskType::suggestedNumPartialCompletions(Period measurementDuration) const {
  const std::int64_t cap = TaskFrequency::maxPartialCompletions(measurementDuration);
  if (type == HealthType::dietaryDrinkWater) return clamped(glassesOfWater(quantity, unit), cap);
  if (type == HealthType::alcoholConsumption) return clamped(quantity, cap);
  if (type == HealthType::toothbrushingEventBrush) return brushingsPerDay;
  if (type == HealthType::handwashingEvent) return handwashingsPerDay;
  return minPartialCompletions();
}

bool AutomaticTaskType::canAdjustDifficultyExternally() const {
  return type == HealthType::burnActiveEnergy;
}

bool AutomaticTaskType::quantityCanCountdown() const {
  return type != HealthType::energyDeficit && unit && isQuantifiable(*unit);
}

bool AutomaticTaskType::isTimed() const {
  return !usesHealthKit() || type.canBeTimed();
}

std::vector<DayMode> AutomaticTaskType::supportedFrequencyModes() const {
  std::vector<DayMode> modes{DayMode::specificDaysOfWeek, DayMode::dayInterval,
                             DayMode::numberOfDaysInWeek, DayMode::numberOfDaysInFortnight,
                             DayMode::numberOfDaysInMonth};
  if (isOneOf(type, {HealthType::activity, TaskType::screenTime()})) return modes;
  for (const DayMode mode : {DayMode::aggregateOverWeek, DayMode::aggregateOverMonth}) {
    const bool canAddUp = type == TaskType::timer() || quantityOptions(measurementDuration(mode));
    if (canAddUp) modes.push_back(mode);
  }
  return modes;
}

std::optional<OxHKUnit> AutomaticTaskType::healthKitCountUnit() const {
  const bool countsHours = isOneOf(type, {HealthType::standHours, HealthType::rollHours});
  const bool isCounted = usesHealthKit() && (countsHours || !unit || isCount(*unit));
  return isCounted ? std::optional(OxHKUnit::count()) : std::nullopt;
}

std::optional<double> AutomaticTaskType::taskProgressValueFromMetres(double metres) const {
  return unit ? convertFromMetres(metres, *unit) : std::nullopt;
}

}  // namespace velloro
