#include "VelloroCore/Types/TaskType.h"

#include "Foundation/Coding/Coding.h"

#include <iterator>

namespace velloro {
namespace {

using health_type_detail::Row;
using health_type_detail::Traits;

constexpr std::string_view timerText = "timer";
constexpr std::string_view screenTimeText = "screenTime";

}  // namespace

std::optional<TaskType> TaskType::fromIndex(std::int64_t index) {
  if (index < 0 || index > screenTime().index_) return std::nullopt;
  return TaskType(static_cast<std::uint8_t>(index));
}

std::optional<TaskType> TaskType::fromRawValue(std::string_view raw) {
  if (raw == timerText) return timer();
  if (raw == screenTimeText) return screenTime();
  return platform::fromRawValue<HealthType>(raw);
}

std::vector<TaskType> TaskType::all() {
  const auto healthTypes = allCases<HealthType>();
  std::vector<TaskType> types(healthTypes.begin(), healthTypes.end());
  types.push_back(timer());
  types.push_back(screenTime());
  return types;
}

std::string_view TaskType::rawValue() const {
  if (const auto type = healthType()) return platform::rawValue(*type);
  return *this == timer() ? timerText : screenTimeText;
}

void TaskType::encode(Encoder& to) const {
  to.encode(rawValue());
}

TaskType TaskType::decode(const Decoder& from) {
  if (const auto type = fromRawValue(from.text())) return *type;
  throw from.unknownCase(typeName<TaskType>());
}

const Row* TaskType::row() const {
  static_assert(std::size(health_type_detail::rows) == timerIndex);
  return usesHealthKit() ? &health_type_detail::rows[index_] : nullptr;
}

bool TaskType::has(Traits trait) const {
  return row() != nullptr && (row()->traits & trait) != 0;
}

std::optional<TypeUnit> TaskType::defaultUnit() const {
  return row() != nullptr ? row()->units.usual : std::nullopt;
}

std::span<const TypeUnit> TaskType::unitOptions() const {
  if (row() != nullptr) return row()->units.options;
  // A timer's target is a workout's.
  return *this == timer() ? TaskType(HealthType::workout).unitOptions()
                          : std::span<const TypeUnit>();
}

TypeSpeeds TaskType::defaultSpeeds() const {
  return row() != nullptr ? row()->speeds.usual : TypeSpeeds();
}

std::span<const TypeSpeed> TaskType::sortedSpeedOptions() const {
  return row() != nullptr ? row()->speeds.options : std::span<const TypeSpeed>();
}

SpeedSelectionType TaskType::canSelectSpeed() const {
  return row() != nullptr ? row()->speeds.selection : SpeedSelectionType::noSpeed;
}

bool TaskType::canBeTimed() const {
  return has(Traits::timed);
}

bool TaskType::canSelectWorkoutTypes() const {
  return has(Traits::ofWorkouts);
}

bool TaskType::canAdjustDifficulty() const {
  return !usesHealthKit() || has(Traits::adjustable);
}

QuantitySelectionStyle TaskType::quantitySelectionStyle() const {
  if (*this == HealthType::workout) return QuantitySelectionStyle::optional;
  return !usesHealthKit() || isQuantityBased() ? QuantitySelectionStyle::required
                                               : QuantitySelectionStyle::unavailable;
}

std::optional<ValueRange> TaskType::quantityOptions(
    std::optional<TypeUnit> unit, TaskFrequencyPeriodType measurementDuration) const {
  const auto type = healthType();
  return type ? velloro::quantityOptions(*type, unit, measurementDuration) : std::nullopt;
}

bool TaskType::isQuantityBased() const {
  return quantityOptions(defaultUnit()).has_value();
}

std::optional<TaskTarget> TaskType::defaultTarget(
    TaskFrequencyPeriodType measurementDuration) const {
  const auto unit = defaultUnit();
  if (!unit) return std::nullopt;
  TaskTarget target{.quantity = 1, .unit = *unit, .speeds = defaultSpeeds()};
  if (const auto range = quantityOptions(unit, measurementDuration)) {
    target.quantity = range->defaultValue().value_or(target.quantity);
  } else if (measurementDuration != TaskFrequencyPeriodType::day) {
    return std::nullopt;
  }
  return target;
}

std::vector<OxHKObjectType> TaskType::healthKitReadTypes(std::optional<TypeUnit> unit,
                                                         TypeSpeeds speeds) const {
  using health_type_detail::object;
  if (*this == HealthType::runOrWalk) {
    if (speeds.contains(TypeSpeed::run)) return {object(health_type_detail::workouts)};
    if (unit && isDistance(*unit)) return {object(health_type_detail::Q::distanceWalkingRunning)};
    if (unit && *unit != TypeUnit::steps) return {};
  }
  if (row() == nullptr) return {};
  return {row()->reads.begin(), row()->reads.end()};
}

HealthKitUpdateFrequency TaskType::healthKitBackgroundUpdateFrequency() const {
  return has(Traits::hourly) ? HealthKitUpdateFrequency::hourly
                             : HealthKitUpdateFrequency::immediate;
}

HealthKitStatisticsOptions TaskType::healthKitStatisticsOptions() const {
  if (!usesHealthKit()) return HealthKitStatisticsOptions::none;
  return isQuantityBased() ? HealthKitStatisticsOptions::cumulativeSum
                           : HealthKitStatisticsOptions::discreteAverage;
}

}  // namespace velloro
