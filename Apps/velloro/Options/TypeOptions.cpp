#include "velloro/Options/TypeOptions.h"

#include "Foundation/Text/String.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"

namespace velloro {

Option TypeOptions::addTo(const Command& command) {
  command.option("--type", type, "TYPE", "An automatic type's stored name (default: none)");
  const Option amount = command.option(
      "--target", target, "AMOUNT", "The target, a time of day as 22:00:00 (default: the type's)");
  command.option("--unit", unit, "UNIT", "The target's unit (default: the type's)");
  return amount;
}

std::optional<AutomaticTaskType> TypeOptions::value(
    std::optional<TaskFrequencyPeriodType> per) const {
  if (!type) {
    if (target) throw UsageError(targetName, *target, "only with a --type");
    if (unit) throw UsageError("--unit", *unit, "only with a --type");
    return std::nullopt;
  }
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
