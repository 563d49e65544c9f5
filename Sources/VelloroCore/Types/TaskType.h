#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Values/Hasher.h"
#include "VelloroCore/Types/HealthType.h"
#include "VelloroCore/Types/QuantityOptions.h"
#include "VelloroCore/Types/TaskTarget.h"

#include <compare>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace velloro {

/// How a target is chosen for a type. The raw values are the indexes.
enum class QuantitySelectionStyle : std::uint8_t {
  unavailable,  ///< There is none.
  required,
  optional,
};

constexpr auto rawValues(std::type_identity<QuantitySelectionStyle>) {
  using enum QuantitySelectionStyle;
  return rawIntegers<QuantitySelectionStyle>({{unavailable, 0}, {required, 1}, {optional, 2}});
}

/// How often the health store wakes the program for new data of a type.
enum class HealthKitUpdateFrequency : std::uint8_t { immediate, hourly };

/// How the health store sums a type's samples up.
enum class HealthKitStatisticsOptions : std::uint8_t { none, discreteAverage, cumulativeSum };

/// Where the completions of an automatic task come from: health data, a timer or screen time. One
/// byte, and in JSON one text. A health type is a task type wherever one is wanted.
///
///     const TaskType type = HealthType::dietaryDrinkWater;
///     type.rawValue();                                      // "hk_water"
///     type.defaultUnit();                                   // TypeUnit::cupsUS
///     type.defaultTarget()->quantity;                       // 8: a day
///     TaskType::timer().healthType();                       // absent
///
/// Where a type has no units, speeds or targets, or nothing to read from the health store, the
/// answer is absent or an empty list.
class TaskType {
 public:
  constexpr TaskType(HealthType type) : index_(static_cast<std::uint8_t>(type)) {}
  [[nodiscard]] static constexpr TaskType healthKit(HealthType type) { return type; }
  [[nodiscard]] static constexpr TaskType timer() { return TaskType(timerIndex); }
  [[nodiscard]] static constexpr TaskType screenTime() { return TaskType(timerIndex + 1); }
  /// The timer: a value for a decoder to fill.
  constexpr TaskType() : TaskType(timer()) {}

  /// 0 to 79 for a health type, 80 for the timer, 81 for screen time; absent beyond.
  [[nodiscard]] static std::optional<TaskType> fromIndex(std::int64_t index);
  /// Absent for an unknown text.
  [[nodiscard]] static std::optional<TaskType> fromRawValue(std::string_view raw);
  /// Every type, in the order of the indexes.
  [[nodiscard]] static std::vector<TaskType> all();

  [[nodiscard]] constexpr std::uint8_t index() const { return index_; }
  /// A health type's raw value, "timer" or "screenTime".
  [[nodiscard]] std::string_view rawValue() const;
  [[nodiscard]] constexpr std::optional<HealthType> healthType() const {
    return usesHealthKit() ? std::optional(static_cast<HealthType>(index_)) : std::nullopt;
  }
  [[nodiscard]] constexpr bool usesHealthKit() const { return index_ < timerIndex; }

  constexpr auto operator<=>(const TaskType&) const = default;
  void encode(Encoder& to) const;
  static TaskType decode(const Decoder& from);
  void hash(Hasher& hasher) const { hasher.combine(index_); }

  [[nodiscard]] std::optional<TypeUnit> defaultUnit() const;
  [[nodiscard]] std::span<const TypeUnit> unitOptions() const;
  [[nodiscard]] bool canSelectUnit() const { return unitOptions().size() > 1; }

  [[nodiscard]] TypeSpeeds defaultSpeeds() const;
  [[nodiscard]] std::span<const TypeSpeed> sortedSpeedOptions() const;
  [[nodiscard]] SpeedSelectionType canSelectSpeed() const;

  /// Whether it is a health type that can be done with a timer running.
  [[nodiscard]] bool canBeTimed() const;
  [[nodiscard]] bool canSelectWorkoutTypes() const;
  /// Whether advice on difficulty may change the target.
  [[nodiscard]] bool canAdjustDifficulty() const;
  [[nodiscard]] bool canCustomizeHealthKitRecordTime() const { return false; }

  [[nodiscard]] QuantitySelectionStyle quantitySelectionStyle() const;
  /// See `velloro::quantityOptions`; absent for what is no health type.
  [[nodiscard]] std::optional<ValueRange> quantityOptions(
      std::optional<TypeUnit> unit,
      TaskFrequencyPeriodType measurementDuration = TaskFrequencyPeriodType::day) const;
  /// Whether the type has targets in its default unit.
  [[nodiscard]] bool isQuantityBased() const;
  /// The default unit, speeds and target; 1 for a day where there is nothing to choose from.
  [[nodiscard]] std::optional<TaskTarget> defaultTarget(
      TaskFrequencyPeriodType measurementDuration = TaskFrequencyPeriodType::day) const;

  /// What must be authorised to be read. A distance that is run is read from workouts; otherwise
  /// it, or its steps, from samples.
  [[nodiscard]] std::vector<OxHKObjectType> healthKitReadTypes(std::optional<TypeUnit> unit,
                                                               TypeSpeeds speeds) const;
  [[nodiscard]] HealthKitUpdateFrequency healthKitBackgroundUpdateFrequency() const;
  [[nodiscard]] HealthKitStatisticsOptions healthKitStatisticsOptions() const;

 private:
  static constexpr std::uint8_t timerIndex = 80;

  explicit constexpr TaskType(std::uint8_t index) : index_(index) {}
  [[nodiscard]] const health_type_detail::Row* row() const;
  [[nodiscard]] bool has(health_type_detail::Traits trait) const;

  std::uint8_t index_;
};

}  // namespace velloro
