#include "velloro/Calendar/DayCommand.h"

#include "Foundation/Text/String.h"
#include "velloro/Calendar/DayReport.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/FirstDayOfWeekOption.h"
#include "velloro/Output/Output.h"

#include <memory>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

namespace velloro {
namespace {

struct DayOptions {
  std::optional<std::string> day;
  std::optional<std::string> at;
  std::string startOfDay = "00:00:00";
  FirstDayOfWeekOption firstDayOfWeek;
  bool json = false;
};

YYYYMMDD chosenDay(const DayOptions& options, HHMMSS startOfDay, TimeZone timeZone) {
  if (options.day) return dayArgument("YYYYMMDD", *options.day);
  const Date instant = options.at ? instantArgument("--at", *options.at) : Date::now();
  const YYYYMMDD day = YYYYMMDD::fromDate(startOfDay, instant, timeZone);
  if (day.y >= 1) return day;
  throw UsageError("--at", *options.at, "lies before the year 1");
}

void run(const DayOptions& options) {
  const HHMMSS startOfDay = timeArgument("--start-of-day", options.startOfDay);
  const TimeZone zone = TimeZone::current();
  const auto report = DayReport::of(chosenDay(options, startOfDay, zone), startOfDay,
                                    options.firstDayOfWeek.value(), zone);
  print(options.json ? report.json() : report.text());
}

}  // namespace

void addDayCommand(CLI::App& app) {
  auto options = std::make_shared<DayOptions>();
  CLI::App* command = app.add_subcommand("day", "Prints the properties of a logical day");
  auto* day = command->add_option("day", options->day, "The day (default: the one of --at)")
                  ->type_name("YYYYMMDD");
  command->add_option("--at", options->at, "The day that contains this instant (default: now)")
      ->type_name("INSTANT")
      ->excludes(day);
  command
      ->add_option("--start-of-day", options->startOfDay, "When a day begins (default: midnight)")
      ->type_name("HH:MM:SS");
  options->firstDayOfWeek.addTo(*command);
  command->add_flag("--json", options->json, "Prints one JSON object")->disable_flag_override();
  command->footer(
      "velloro --help lists the options of every command: --now, --zone, --locale, --store.\n\n"
      "Examples:\n"
      "  velloro day\n"
      "  velloro day 20240229 --first-day-of-week monday\n"
      "  velloro day --at 2024-03-07T01:59:59Z --start-of-day 03:00:00 --zone Europe/Berlin "
      "--json");
  command->callback([options] { run(*options); });
}

}  // namespace velloro
