#include "velloro/Options/TypeOptions.h"

#include "Foundation/Text/String.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/CaseArgument.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/NameList.h"

#include <algorithm>
#include <string>
#include <vector>

namespace velloro {

Option TypeOptions::addTo(const Command& command) {
  command.option("--type", type, "TYPE", "An automatic type's stored name (default: none)");
  const Option amount = command.option(
      "--target", target, "AMOUNT", "The target, a time of day as 22:00:00 (default: the type's)");
  command.option("--unit", unit, "UNIT", "The target's unit (default: the type's)");
  command.option("--speed", speed, "NAME,…",
                 "Which sleep counts, run or walk, before or after a time (default: the type's)");
  command.option("--workouts", workouts, "NAME,…", "Which workouts count (default: all)");
  command.option("--data-source", dataSource, "curr|all",
                 "Whether only samples written for the task count (default: all)");
  return amount;
}

std::optional<AutomaticTaskType> TypeOptions::value(
    std::optional<TaskFrequencyPeriodType> per) const {
  if (!type) {
    if (target) throw UsageError(targetName, *target, "only with a --type");
    if (unit) throw UsageError("--unit", *unit, "only with a --type");
    return std::nullopt;
  }
  return refined(chosenType(per));
}

AutomaticTaskType TypeOptions::chosenType(std::optional<TaskFrequencyPeriodType> per) const {
  const TaskType chosen = taskTypeArgument("--type", *type);
  auto in = chosen.defaultUnit();
  if (unit) in = unitArgument("--unit", *unit, chosen);
  if (in) {
    const double amount = quantity(chosen, *in, per.value_or(TaskFrequencyPeriodType::day));
    const AutomaticTaskType made(
        chosen, TaskTarget{.quantity = amount, .unit = *in, .speeds = chosen.defaultSpeeds()});
    if (target && per) expectToFit(targetName, *target, made, *per);
    return made;
  }
  if (target) {
    throw UsageError(targetName, *target,
                     std::string(chosen.rawValue()) +
                         (unitNames(chosen).empty() ? " has no amount" : " needs a --unit"));
  }
  return AutomaticTaskType(chosen);
}

namespace {

TypeSpeeds speedsArgument(const std::string& text, TaskType of) {
  const auto options = of.sortedSpeedOptions();
  std::vector<std::string_view> known;
  for (const TypeSpeed one : options) known.push_back(rawValue(one));
  if (known.empty()) {
    throw UsageError("--speed", text, std::string(of.rawValue()) + " has no speeds");
  }
  TypeSpeeds chosen;
  for (const std::string& name : namesIn(text)) {
    const auto speed = fromRawValue<TypeSpeed>(name);
    if (!speed || std::ranges::find(options, *speed) == options.end()) {
      throw unknownName("--speed", name, "speed of " + std::string(of.rawValue()), known);
    }
    chosen.insert(*speed);
  }
  if (of.canSelectSpeed() == SpeedSelectionType::single && chosen.size() > 1) {
    throw UsageError("--speed", text, "only one can be chosen");
  }
  return chosen;
}

WorkoutType workoutArgument(const std::string& name, TaskType of) {
  if (of != HealthType::velloroWorkout) {
    return WorkoutType::healthKit(
        caseArgument<OxHKWorkoutActivityType>("--workouts", name, "workout"));
  }
  using ID = VelloroWorkoutWorkoutType::ID;
  if (const auto id = UUID::fromString(name)) {
    return WorkoutType::velloroWorkout({.id = ID::custom(*id), .title = name});
  }
  const auto level = caseArgument<VelloroWorkoutWorkoutType::System>("--workouts", name, "workout");
  return WorkoutType::velloroWorkout({.id = ID::system(level), .title = name});
}

}  // namespace

AutomaticTaskType TypeOptions::refined(AutomaticTaskType of) const {
  if (speed) of.speeds = speedsArgument(*speed, of.type);
  if (workouts) {
    if (!of.type.canSelectWorkoutTypes()) {
      throw UsageError("--workouts", *workouts,
                       std::string(of.type.rawValue()) + " has no choice of workouts");
    }
    if (!of.extra) of.extra.emplace();
    of.extra->workoutTypes.clear();
    for (const std::string& name : namesIn(*workouts)) {
      of.extra->workoutTypes.insert(workoutArgument(name, of.type));
    }
  }
  if (dataSource) {
    if (!of.usesHealthKit()) {
      throw UsageError("--data-source", *dataSource,
                       std::string(of.type.rawValue()) + " is not read from health data");
    }
    of.dataSource =
        caseArgument<AutomaticTaskType::DataSource>("--data-source", *dataSource, "data source");
  }
  return of;
}

double TypeOptions::quantity(TaskType of, TypeUnit in, TaskFrequencyPeriodType per) const {
  if (!target) {
    const auto range = of.quantityOptions(in, per);
    return range ? range->defaultValue().value_or(1) : 1;
  }
  if (in == TypeUnit::timeOfDay) {
    return static_cast<double>(timeArgument(targetName, *target).intValue());
  }
  const double amount = amountArgument(targetName, *target);
  if (amount > 0 || of == HealthType::energyDeficit) return amount;
  throw UsageError(targetName, *target, "not above 0");
}

void expectToFit(const char* name, const std::string& text, const AutomaticTaskType& type,
                 TaskFrequencyPeriodType period) {
  if (!type.unit || !isDuration(*type.unit)) return;
  constexpr double day = 86400;
  constexpr double mostDays[] = {1, 7, 14, 31, 366};
  const double most = mostDays[static_cast<std::size_t>(period)] * day;
  if (convertToTimeInterval(type.quantity, *type.unit) <= most) return;
  throw UsageError(name, text, "more than a " + periodName(period) + " has room for");
}

}  // namespace velloro
