#include "velloro/Options/FrequencyOptions.h"

#include "VelloroCore/Frequency/DayModeRules.h"
#include "velloro/Options/Arguments.h"

#include <CLI/CLI.hpp>

namespace velloro {

void FrequencyOptions::addTo(CLI::App& command, const TaskFrequency& base) {
  const auto add = [&](const char* name, auto& value, const char* placeholder,
                       const std::string& help) {
    command.add_option(name, value, help)->type_name(placeholder);
  };
  const auto byDefault = [](const char* text, std::int64_t count) {
    return std::string(text) + " (default: " + std::to_string(count) + ")";
  };
  add("--mode", mode, "MODE", "How the task recurs, such as numberOfDaysInWeek");
  add("--days", days, "DAY,DAY…", "The days of specificDaysOfWeek (default: every day)");
  add("--times", times, "N",
      byDefault("Completed days per period, for modes that count them", base.numCompletions));
  add("--interval", interval, "N",
      byDefault("Days between completions, for dayInterval", base.dayInterval));
  add("--partial", partial, "N",
      byDefault("Steps that make a completion", base.numPartialCompletions));
}

void expectUse(const char* name, const std::optional<std::string>& text, DayMode mode,
               bool isUsed) {
  if (!text || isUsed) return;
  throw UsageError(std::string(name) + " \"" + *text + "\": " + modeName(mode) +
                   " makes no use of it");
}

TaskFrequency FrequencyOptions::over(TaskFrequency base) const {
  if (mode) {
    base.dayMode = modeArgument("--mode", *mode);
  } else if (interval) {
    base.dayMode = DayMode::dayInterval;
  } else if (times) {
    if (!countsDays(base.dayMode)) base.dayMode = DayMode::numberOfDaysInWeek;
  } else if (days) {
    base.dayMode = DayMode::specificDaysOfWeek;
  }
  expectUse("--days", days, base.dayMode, base.dayMode == DayMode::specificDaysOfWeek);
  expectUse("--times", times, base.dayMode, countsDays(base.dayMode));
  expectUse("--interval", interval, base.dayMode, base.dayMode == DayMode::dayInterval);
  if (days) base.days = weekdaysArgument("--days", *days);
  if (times) base.numCompletions = countArgument("--times", *times);
  if (interval) base.dayInterval = countArgument("--interval", *interval);
  if (partial) base.numPartialCompletions = countArgument("--partial", *partial);
  return base;
}

std::string modesFooter() {
  std::string modes = "Modes:\n";
  for (const DayMode mode : allCases<DayMode>()) modes += "  " + modeName(mode) + "\n";
  return modes;
}

}  // namespace velloro
