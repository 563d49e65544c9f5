#include "velloro/Tasks/TypeReport.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Text/String.h"
#include "OxDateTime/HHMMSS.h"
#include "velloro/Options/Arguments.h"

#include <algorithm>

namespace velloro {
namespace {

constexpr auto modeNames = caseNames<DayMode::specificDaysOfMonth>();

std::optional<ValueRange> rangeOf(TaskType type, TypeUnit unit, TaskFrequencyPeriodType period) {
  return type == TaskType::timer() ? optionsForTimedTasks(unit, period)
                                   : type.quantityOptions(unit, period);
}

std::vector<TypeReport::Range> rangesOf(TaskType type, TaskFrequencyPeriodType period) {
  std::vector<TypeReport::Range> ranges;
  for (const TypeUnit unit : type.unitOptions()) {
    const auto range = rangeOf(type, unit, period);
    if (!range) continue;
    ranges.push_back({.unit = unit,
                      .first = range->first(),
                      .last = range->last(),
                      .count = range->count(),
                      .defaultValue = range->defaultValue()});
  }
  return ranges;
}

std::vector<std::string> modesOf(const AutomaticTaskType& task) {
  std::vector<std::string> names;
  for (const DayMode mode : task.supportedFrequencyModes()) {
    names.emplace_back(modeNames.rawValue(mode));
  }
  return names;
}

std::string amountText(std::optional<double> amount, TypeUnit unit) {
  if (!amount) return "-";
  if (unit == TypeUnit::timeOfDay) {
    const auto time = HHMMSS::fromIntValue(static_cast<std::int64_t>(*amount));
    return time ? time->debugDescription() : "-";
  }
  return stringWithFormat("%.15g", *amount);
}

std::string targetText(const std::optional<TaskTarget>& target) {
  if (!target) return "-";
  const std::string amount = amountText(target->quantity, target->unit);
  return isQuantifiable(target->unit) ? amount + " " + std::string(rawValue(target->unit)) : amount;
}

std::string joined(const auto& values, const auto& textOf) {
  std::string text;
  for (const auto& value : values) {
    text += (text.empty() ? "" : ", ") + std::string(textOf(value));
  }
  return text.empty() ? "-" : text;
}

std::string rangeText(const TypeReport::Range& range) {
  return stringWithFormat("  %-12s %10s %10s %8zu %10s\n", rawValue(range.unit).data(),
                          amountText(range.first, range.unit).c_str(),
                          amountText(range.last, range.unit).c_str(), range.count,
                          amountText(range.defaultValue, range.unit).c_str());
}

const TypeReport::Range* usualRange(const TypeReport& report) {
  const auto found = std::ranges::find_if(report.ranges, [&](const auto& range) {
    return !report.defaultTarget || range.unit == report.defaultTarget->unit;
  });
  return found != report.ranges.end() ? &*found : nullptr;
}

}  // namespace

TypeReport TypeReport::of(TaskType type, TaskFrequencyPeriodType period) {
  const AutomaticTaskType task(type, type.defaultTarget(period));
  return {.type = type,
          .period = periodName(period),
          .unitOptions = {type.unitOptions().begin(), type.unitOptions().end()},
          .speedOptions = {type.sortedSpeedOptions().begin(), type.sortedSpeedOptions().end()},
          .defaultTarget = task.taskTarget(),
          .ranges = rangesOf(type, period),
          .partialCompletions = {.minimum = task.minPartialCompletions(),
                                 .maximum = task.maxPartialCompletions(period),
                                 .atFirst = task.defaultPartialCompletions(period),
                                 .suggested = task.suggestedNumPartialCompletions(period)},
          .frequencyModes = modesOf(task)};
}

std::string TypeReport::json() const {
  return JSONEncoder{}.encode(*this) + "\n";
}

std::string TypeReport::text() const {
  const auto rawText = [](auto value) { return velloro::debugDescription(value); };
  std::string text = std::string(type.rawValue()) + ", per " + period + "\n\n";
  text += "target       " + targetText(defaultTarget) + "\n";
  text += "units        " + joined(unitOptions, rawText) + "\n";
  text += "speeds       " + joined(speedOptions, rawText) + "\n";
  text += stringWithFormat("parts        %lld to %lld, at first %lld, suggested %lld\n",
                           static_cast<long long>(partialCompletions.minimum),
                           static_cast<long long>(partialCompletions.maximum),
                           static_cast<long long>(partialCompletions.atFirst),
                           static_cast<long long>(partialCompletions.suggested));
  text += "frequencies  " + joined(frequencyModes, [](const auto& name) { return name; }) + "\n";
  if (ranges.empty()) return text;
  text +=
      stringWithFormat("\n  %-12s %10s %10s %8s %10s\n", "unit", "from", "to", "values", "default");
  for (const Range& range : ranges) text += rangeText(range);
  return text;
}

std::string json(const std::vector<TypeReport>& reports) {
  return JSONEncoder{}.encode(reports) + "\n";
}

std::string table(const std::vector<TypeReport>& reports) {
  std::string text = stringWithFormat("%-32s %-20s %10s %10s %8s %6s %6s\n", "type", "target",
                                      "from", "to", "values", "parts", "modes");
  for (const TypeReport& report : reports) {
    const auto* range = usualRange(report);
    const auto unit = range != nullptr ? range->unit : TypeUnit::steps;
    text += stringWithFormat(
        "%-32s %-20s %10s %10s %8zu %6lld %6zu\n", report.type.rawValue().data(),
        targetText(report.defaultTarget).c_str(),
        amountText(range != nullptr ? range->first : std::nullopt, unit).c_str(),
        amountText(range != nullptr ? range->last : std::nullopt, unit).c_str(),
        range != nullptr ? range->count : 0,
        static_cast<long long>(report.partialCompletions.maximum), report.frequencyModes.size());
  }
  return text;
}

}  // namespace velloro
