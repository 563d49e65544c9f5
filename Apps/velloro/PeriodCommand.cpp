#include "velloro/PeriodCommand.h"

#include "velloro/Arguments.h"
#include "velloro/FirstDayOfWeekOption.h"
#include "velloro/PeriodReport.h"

#include <cstdio>
#include <memory>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

namespace velloro {
namespace {

struct PeriodOptions {
  std::string mode;
  std::optional<std::string> days;
  std::optional<std::string> times;
  std::optional<std::string> interval;
  std::optional<std::string> partial;
  std::optional<std::string> date;
  FirstDayOfWeekOption firstDayOfWeek;
  bool json = false;
};

TaskFrequency chosenFrequency(const PeriodOptions& options) {
  TaskFrequency frequency{.dayMode = modeArgument("--mode", options.mode)};
  if (options.days) frequency.days = weekdaysArgument("--days", *options.days);
  if (options.times) frequency.numCompletions = countArgument("--times", *options.times);
  if (options.interval) frequency.dayInterval = countArgument("--interval", *options.interval);
  if (options.partial)
    frequency.numPartialCompletions = countArgument("--partial", *options.partial);
  return frequency;
}

void run(const PeriodOptions& options) {
  const TaskFrequency frequency = chosenFrequency(options);
  const YYYYMMDD date =
      options.date ? dayArgument("--date", *options.date) : YYYYMMDD::today(HHMMSS::midnight);
  const auto report = PeriodReport::of(frequency, date, options.firstDayOfWeek.value());
  const std::string text = options.json ? report.json() : report.text();
  std::fwrite(text.data(), 1, text.size(), stdout);
}

void addOptions(CLI::App& command, PeriodOptions& options) {
  const TaskFrequency& defaults = TaskFrequency::defaultFrequency;
  const auto byDefault = [](const char* text, std::int64_t count) {
    return std::string(text) + " (default: " + std::to_string(count) + ")";
  };
  command.add_option("--mode", options.mode, "How the task recurs, such as numberOfDaysInWeek")
      ->type_name("MODE")
      ->required();
  command.add_option("--days", options.days, "The days of specificDaysOfWeek (default: every day)")
      ->type_name("DAY,DAY…");
  command
      .add_option("--times", options.times,
                  byDefault("Completed days per period, for modes that count them",
                            defaults.numCompletions))
      ->type_name("N");
  command
      .add_option("--interval", options.interval,
                  byDefault("Days between completions, for dayInterval", defaults.dayInterval))
      ->type_name("N");
  command
      .add_option("--partial", options.partial,
                  byDefault("Steps that make a completion", defaults.numPartialCompletions))
      ->type_name("N");
  command.add_option("--date", options.date, "A day of the period (default: today)")
      ->type_name("YYYYMMDD");
  options.firstDayOfWeek.addTo(command);
  command.add_flag("--json", options.json, "Prints one JSON object")->disable_flag_override();
}

}  // namespace

void addPeriodCommand(CLI::App& app) {
  auto options = std::make_shared<PeriodOptions>();
  CLI::App* command = app.add_subcommand("period", "Tells the period of a task that a day lies in");
  addOptions(*command, *options);
  std::string modes = "Modes:\n";
  for (const DayMode mode : allCases<DayMode>()) modes += "  " + modeName(mode) + "\n";
  command->footer(modes +
                  "\nExamples:\n"
                  "  velloro period --mode numberOfDaysInWeek --times 3\n"
                  "  velloro period --mode specificDaysOfWeek --days mon,wed,fri --date 20240306\n"
                  "  velloro period --mode aggregateOverFortnight --date 20000108 "
                  "--first-day-of-week sunday --json");
  command->callback([options] { run(*options); });
}

}  // namespace velloro
