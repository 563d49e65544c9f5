#include "velloro/Options/FrequencyOptions.h"

#include "VelloroCore/Frequency/DayModeRules.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/EveryArgument.h"

namespace velloro {
namespace {

UsageError incomplete(const char* name, const std::string& text, const std::string& needed) {
  return UsageError(name, text, "needs " + needed);
}

}  // namespace

void FrequencyOptions::addTo(const Command& command, const TaskFrequency& base) {
  const auto byDefault = [](const char* text, std::int64_t count) {
    return std::string(text) + " (default: " + std::to_string(count) + ")";
  };
  command.option("--every", every, "WHEN",
                 "Weekdays as mon,wed,fri, or an interval: day, weekday, 3d, \"2 weeks\"");
  command
      .option("--times", times, "N",
              byDefault("Completed days per period, or steps of a day", base.numCompletions))
      .excludes({"--every"});
  command.option("--total", total, "N", "One total over the period of --per: steps, or a target")
      .excludes({"--every", "--times"});
  command
      .option("--per", per, "PERIOD",
              "The period of --times or --total: day, week, fortnight, month or year")
      .excludes({"--every"});
  command.option("--days", days, "DAY,DAY…", "Weekdays, such as mon,wed (default: all)")
      .excludes({"--every", "--total"});
  command
      .option("--interval", interval, "N",
              byDefault("Days from one completion to the next", base.dayInterval))
      .excludes({"--every", "--total", "--per"});
  command
      .option("--mode", mode, "MODE",
              "How the task recurs, by its stored name, such as numberOfDaysInWeek")
      .excludes({"--every", "--total", "--per"});
  command.option("--partial", partial, "N",
                 byDefault("Steps that make a completion", base.numPartialCompletions));
}

TaskFrequency FrequencyOptions::over(TaskFrequency base, bool isTotalTarget) const {
  if (per && !times && !total) throw incomplete("--per", *per, "--times or --total");
  if (total && !per) throw incomplete("--total", *total, "--per");
  const DayMode former = base.dayMode;
  Steps steps;
  if (every) {
    steps = {"--every", setRecurrence(base, "--every", *every)};
  } else if (per) {
    setPeriod(base, periodArgument("--per", *per), total.has_value());
  } else {
    base.dayMode = modeOver(base.dayMode);
  }
  // What were the steps of a total are none of a day.
  if (isAggregate(former) && !isAggregate(base.dayMode)) {
    base.numPartialCompletions = TaskFrequency::minPartialCompletions;
  }
  const bool isPerDay = per && base.dayMode == DayMode::specificDaysOfWeek;
  expectUse("--days", days, base.dayMode == DayMode::specificDaysOfWeek);
  expectUse("--times", times, countsDays(base.dayMode) || isPerDay);
  expectUse("--interval", interval, base.dayMode == DayMode::dayInterval);
  if (days) base.days = weekdaysArgument("--days", *days);
  if (times && !isPerDay) base.numCompletions = countArgument("--times", *times);
  if (interval) base.dayInterval = countArgument("--interval", *interval);
  if (times && isPerDay) steps = {"--times", countArgument("--times", *times)};
  if (total && !isTotalTarget) steps = {"--total", countArgument("--total", *total)};
  setSteps(base, steps);
  return base;
}

void FrequencyOptions::setSteps(TaskFrequency& frequency, const Steps& steps) const {
  if (steps.count && partial) {
    throw UsageError("--partial", *partial, std::string(steps.option) + " says the steps already");
  }
  if (steps.count) frequency.numPartialCompletions = *steps.count;
  if (partial) frequency.numPartialCompletions = countArgument("--partial", *partial);
}

void FrequencyOptions::expectUse(const char* name, const std::optional<std::string>& text,
                                 bool isUsed) const {
  if (!text || isUsed) return;
  const std::string typed = choice();
  throw UsageError(
      name, *text,
      "has no meaning " + (typed.empty() ? "for how the task recurs" : "with " + typed));
}

/// The options that say how the task recurs, as they were typed.
std::string FrequencyOptions::choice() const {
  const auto written = [](const char* name, const std::string& text) {
    return std::string(name) + " " + cited(text);
  };
  if (every) return written("--every", *every);
  if (per) {
    const auto& count = total ? written("--total", *total) : written("--times", *times);
    return count + " " + written("--per", *per);
  }
  if (mode) return written("--mode", *mode);
  if (interval) return written("--interval", *interval);
  if (times) return written("--times", *times);
  return days ? written("--days", *days) : "";
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
