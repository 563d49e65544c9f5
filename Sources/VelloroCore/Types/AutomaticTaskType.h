#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "VelloroCore/Frequency/DayMode.h"
#include "VelloroCore/Types/TaskType.h"
#include "VelloroCore/Types/TypeExtra.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace velloro {

struct OxHKUnit;

/// What completes an automatic task, and how much of it is called for.
///
///     const AutomaticTaskType water(HealthType::dietaryDrinkWater,
///                                   TaskTarget{.quantity = 8, .unit = TypeUnit::cupsUS});
///     water.nextQuantity();                        // 9
///     water.suggestedNumPartialCompletions();      // 8
///
///     // Ten minutes in three parts; the target is stored whole.
///     const auto timer = AutomaticTaskType::timer(200, 3, TypeUnit::durationMinutes);
///     timer.quantity;                              // 10
///     timer.timerDurationPerCompletion(3);         // 200 seconds
struct AutomaticTaskType {
  using HealthType = velloro::HealthType;
  using TaskTarget = velloro::TaskTarget;
  using TaskType = velloro::TaskType;
  using TypeExtra = velloro::TypeExtra;
  using TypeSpeed = velloro::TypeSpeed;
  using TypeUnit = velloro::TypeUnit;
  using WorkoutType = velloro::WorkoutType;

  /// Which samples of the health store count.
  enum class DataSource : std::uint8_t {
    currentTask,  ///< Only those that the program wrote for this task.
    allData,
  };
  static constexpr DataSource defaultDataSource = DataSource::allData;

  /// What one burns and eats; the deficit is burnt more than eaten.
  struct EnergyDeficit {
    TypeUnit unit = TypeUnit::calories;
    double activeEnergy = 0;
    double restingEnergy = 0;
    double dietaryEnergy = 0;

    bool operator==(const EnergyDeficit&) const = default;
  };

  TaskType type;
  double quantity = 0;  ///< The target, in `unit`.
  std::optional<TypeUnit> unit;
  TypeSpeeds speeds;
  std::optional<TypeExtra> extra;
  std::optional<DataSource> dataSource;  ///< Absent for `defaultDataSource`.

  AutomaticTaskType() = default;
  explicit AutomaticTaskType(TaskType type, const std::optional<TaskTarget>& target = {},
                             std::optional<TypeExtra> extra = {},
                             std::optional<DataSource> dataSource = {});
  /// A timer that runs `durationPerCompletion` seconds for each of the partial completions.
  [[nodiscard]] static AutomaticTaskType timer(double durationPerCompletion,
                                               std::int64_t numPartialCompletions, TypeUnit unit,
                                               std::optional<DataSource> dataSource = {});

  bool operator==(const AutomaticTaskType&) const = default;
  static constexpr auto codingKeys = keys(
      key("type", &AutomaticTaskType::type), key("quantity", &AutomaticTaskType::quantity),
      key("unit", &AutomaticTaskType::unit),
      key("speeds", &AutomaticTaskType::speeds, initialValue),
      key("extra", &AutomaticTaskType::extra), key("dataSource", &AutomaticTaskType::dataSource));
  /// For logs: "type=hk_distance quantity=5 unit=km speeds=[run] extra=none".
  [[nodiscard]] std::string debugDescription() const;

  /// Absent without a unit.
  [[nodiscard]] std::optional<TaskTarget> taskTarget() const;
  /// Without a target there is no unit, no speed and a quantity of 0.
  void setTaskTarget(const std::optional<TaskTarget>& target);

  /// Makes this the timer that `timer` makes, in the unit that it has, or in seconds.
  void setTimerDuration(double durationPerCompletion, std::int64_t numPartialCompletions);
  /// Seconds; 0 for less than one partial completion, absent without a unit.
  [[nodiscard]] std::optional<double> timerDurationPerCompletion(
      std::int64_t numPartialCompletions) const;

  // Where a function takes a measurement duration, it is the period in which the task's log is
  // kept.
  using Period = TaskFrequencyPeriodType;

  [[nodiscard]] std::optional<TaskTarget> defaultTarget(
      Period measurementDuration = Period::day) const {
    return type.defaultTarget(measurementDuration);
  }
  /// The targets to choose from in the task's own unit.
  [[nodiscard]] std::optional<ValueRange> quantityOptions(
      Period measurementDuration = Period::day) const {
    return type.quantityOptions(unit, measurementDuration);
  }
  // The next and the previous target to choose; absent at the ends and where there is no choice.
  [[nodiscard]] std::optional<double> nextQuantity(Period measurementDuration = Period::day) const;
  [[nodiscard]] std::optional<double> previousQuantity(
      Period measurementDuration = Period::day) const;

  // How many steps a full completion can be cut into, has at first, and would have if it went by
  // the amount: eight glasses of two litres.
  [[nodiscard]] std::int64_t minPartialCompletions() const;
  [[nodiscard]] std::int64_t maxPartialCompletions(Period measurementDuration = Period::day) const;
  [[nodiscard]] std::int64_t defaultPartialCompletions(
      Period measurementDuration = Period::day) const;
  [[nodiscard]] std::int64_t suggestedNumPartialCompletions(
      Period measurementDuration = Period::day) const;

  /// Whether advice on difficulty may change the target.
  [[nodiscard]] bool canAdjustDifficulty() const { return type.canAdjustDifficulty(); }
  /// Whether the target can follow the goal of the activity rings.
  [[nodiscard]] bool canAdjustDifficultyExternally() const;
  /// Whether it makes sense to show what is left.
  [[nodiscard]] bool quantityCanCountdown() const;
  /// Whether a timer can run for it: timers, screen time and the health types that can be timed.
  [[nodiscard]] bool isTimed() const;
  [[nodiscard]] bool usesHealthKit() const { return type.usesHealthKit(); }
  /// The frequencies that the task can have, in the order in which they are offered.
  [[nodiscard]] std::vector<DayMode> supportedFrequencyModes() const;

  [[nodiscard]] HealthKitStatisticsOptions healthKitStatisticsOptions() const {
    return type.healthKitStatisticsOptions();
  }
  /// `count` where the health store counts what the task asks for: steps, flights, hours in which
  /// one stood, and whatever has no unit. Absent where it measures, and without health data.
  [[nodiscard]] std::optional<OxHKUnit> healthKitCountUnit() const;
  /// A distance in the task's unit; absent unless that is a unit of distance.
  [[nodiscard]] std::optional<double> taskProgressValueFromMetres(double metres) const;
};

constexpr auto rawValues(std::type_identity<AutomaticTaskType::DataSource>) {
  using enum AutomaticTaskType::DataSource;
  return rawTexts<AutomaticTaskType::DataSource>({{currentTask, "curr"}, {allData, "all"}});
}

/// The automatic type of a task row once it has been decoded, also if the row has none.
struct AutomaticTaskTypeContainer {
  std::optional<AutomaticTaskType> value;
};

}  // namespace velloro
