#include "velloro/Calendar/PeriodCommand.h"

#include "velloro/Calendar/PeriodReport.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/FirstDayOfWeekOption.h"
#include "velloro/Options/FrequencyOptions.h"
#include "velloro/Output/Output.h"

#include <memory>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

namespace velloro {
namespace {

struct PeriodOptions {
  FrequencyOptions frequency;
  std::optional<std::string> date;
  FirstDayOfWeekOption firstDayOfWeek;
  bool json = false;
};

void run(const PeriodOptions& options) {
  if (!options.frequency.areRecurring()) {
    throw UsageError("--mode is required, or --every, --times, --total, --days or --interval");
  }
  const TaskFrequency frequency = options.frequency.over(TaskFrequency::defaultFrequency);
  const TimeZone zone = TimeZone::current();
  const YYYYMMDD date = options.date ? dayArgument("--date", *options.date)
                                     : YYYYMMDD::today(HHMMSS::midnight, zone, Date::now());
  const DayOfWeek first = options.firstDayOfWeek.value(frequency.dayMode, options.frequency);
  const auto report = PeriodReport::of(frequency, date, first, zone);
  print(options.json ? report.json() : report.text());
}

void addOptions(CLI::App& command, PeriodOptions& options) {
  options.frequency.addTo(command);
  command.add_option("--date", options.date, "A day of the period (default: today)")
      ->type_name("YYYYMMDD");
  options.firstDayOfWeek.addTo(command);
  command.add_flag("--json", options.json, "Prints one JSON object")->disable_flag_override();
}

}  // namespace

void addPeriodCommand(CLI::App& app) {
  auto options = std::make_shared<PeriodOptions>();
  CLI::App* command =
      app.add_subcommand("period", "Prints the period of a task that contains a day");
  addOptions(*command, *options);
  command->footer(modesFooter() +
                  "\nExamples:\n"
                  "  velloro period --times 3 --per week\n"
                  "  velloro period --mode specificDaysOfWeek --days mon,wed,fri --date 20240306\n"
                  "  velloro period --mode aggregateOverFortnight --date 20000108 "
                  "--first-day-of-week sunday --json");
  command->callback([options] { run(*options); });
}

}  // namespace velloro
