#include "velloro/Options/FrequencyOptions.h"

#include "Foundation/Text/String.h"
#include "VelloroCore/Frequency/DayModeRules.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/EveryArgument.h"

#include <algorithm>

#include <CLI/CLI.hpp>

namespace velloro {
namespace {

struct PeriodRow {
  TaskFrequencyPeriodType period;
  DayMode times;  ///< That counts days of the period.
  DayMode total;  ///< That keeps one total over the period.
};

constexpr PeriodRow periods[] = {
    {TaskFrequencyPeriodType::day, DayMode::specificDaysOfWeek, DayMode::specificDaysOfWeek},
    {TaskFrequencyPeriodType::week, DayMode::numberOfDaysInWeek, DayMode::aggregateOverWeek},
    {TaskFrequencyPeriodType::fortnight, DayMode::numberOfDaysInFortnight,
     DayMode::aggregateOverFortnight},
    {TaskFrequencyPeriodType::month, DayMode::numberOfDaysInMonth, DayMode::aggregateOverMonth},
    {TaskFrequencyPeriodType::year, DayMode::numberOfDaysInYear, DayMode::aggregateOverYear}};

UsageError incomplete(const char* name, const std::string& text, const char* needed) {
  return UsageError(name + (" " + inQuotes(text)) + ": needs " + needed);
}

}  // namespace

void FrequencyOptions::addTo(CLI::App& command, const TaskFrequency& base) {
  const auto add = [&](const char* name, auto& value, const char* placeholder,
                       const std::string& help) {
    return command.add_option(name, value, help)->type_name(placeholder);
  };
  const auto byDefault = [](const char* text, std::int64_t count) {
    return std::string(text) + " (default: " + std::to_string(count) + ")";
  };
  auto* often = add("--every", every, "WHEN",
                    "Weekdays as mon,wed,fri, or an interval: day, weekday, 3d, \"2 weeks\"");
  auto* count = add("--times", times, "N",
                    byDefault("Completed days per period, or steps of a day", base.numCompletions));
  auto* sum = add("--total", total, "N", "One total over the period of --per: steps, or a target");
  auto* span = add("--per", per, "PERIOD",
                   "The period of --times or --total: day, week, fortnight, month or year");
  auto* weekdays = add("--days", days, "DAY,DAY…", "Weekdays, such as mon,wed (default: all)");
  auto* gap = add("--interval", interval, "N",
                  byDefault("Days from one completion to the next", base.dayInterval));
  auto* stored = add("--mode", mode, "MODE",
                     "How the task recurs, by its stored name, such as numberOfDaysInWeek");
  add("--partial", partial, "N",
      byDefault("Steps that make a completion", base.numPartialCompletions));
  for (auto* other : {count, sum, span, weekdays, gap, stored}) often->excludes(other);
  for (auto* other : {count, weekdays, gap, stored}) sum->excludes(other);
  for (auto* other : {gap, stored}) span->excludes(other);
}

void expectUse(const char* name, const std::optional<std::string>& text, DayMode mode,
               bool isUsed) {
  if (!text || isUsed) return;
  throw UsageError(std::string(name) + " \"" + *text + "\": " + modeName(mode) +
                   " makes no use of it");
}

TaskFrequency FrequencyOptions::over(TaskFrequency base, bool isTotalTarget) const {
  if (per && !times && !total) throw incomplete("--per", *per, "--times or --total");
  if (total && !per) throw incomplete("--total", *total, "--per");
  const DayMode former = base.dayMode;
  if (every) {
    setRecurrence(base, "--every", *every);
  } else if (per) {
    choosePeriod(base);
  } else {
    base.dayMode = modeOver(base.dayMode);
  }
  // What were the steps of a total are none of a day.
  if (isAggregate(former) && !isAggregate(base.dayMode)) {
    base.numPartialCompletions = TaskFrequency::minPartialCompletions;
  }
  const bool isPerDay = per && base.dayMode == DayMode::specificDaysOfWeek;
  expectUse("--days", days, base.dayMode, base.dayMode == DayMode::specificDaysOfWeek);
  expectUse("--times", times, base.dayMode, countsDays(base.dayMode) || isPerDay);
  expectUse("--interval", interval, base.dayMode, base.dayMode == DayMode::dayInterval);
  if (days) base.days = weekdaysArgument("--days", *days);
  if (times && !isPerDay) base.numCompletions = countArgument("--times", *times);
  if (interval) base.dayInterval = countArgument("--interval", *interval);
  if (partial) base.numPartialCompletions = countArgument("--partial", *partial);
  const auto& steps = isPerDay && times ? times : isTotalTarget ? std::nullopt : total;
  if (!steps) return base;
  const char* name = steps == total ? "--total" : "--times";
  if (partial) {
    throw UsageError("--partial " + inQuotes(*partial) + ": " + name + " says the steps already");
  }
  base.numPartialCompletions = countArgument(name, *steps);
  return base;
}

void FrequencyOptions::choosePeriod(TaskFrequency& frequency) const {
  const auto period = periodArgument("--per", *per);
  const auto& row = *std::ranges::find(periods, period, &PeriodRow::period);
  const DayMode chosen = total ? row.total : row.times;
  if (chosen == DayMode::specificDaysOfWeek && frequency.dayMode != chosen) {
    frequency.days = everyDay();
  }
  frequency.dayMode = chosen;
}

DayMode FrequencyOptions::modeOver(DayMode base) const {
  if (mode) return modeArgument("--mode", *mode);
  if (interval) return DayMode::dayInterval;
  if (times) return countsDays(base) ? base : DayMode::numberOfDaysInWeek;
  return days ? DayMode::specificDaysOfWeek : base;
}

std::string modesFooter() {
  std::string modes = "Modes:\n";
  for (const DayMode mode : allCases<DayMode>()) modes += "  " + modeName(mode) + "\n";
  return modes;
}

}  // namespace velloro
