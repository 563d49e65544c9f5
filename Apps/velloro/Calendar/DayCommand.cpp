#include "velloro/Calendar/DayCommand.h"

#include "Foundation/Text/String.h"
#include "velloro/Calendar/DayReport.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/FirstDayOfWeekOption.h"
#include "velloro/Output/Output.h"

#include <optional>
#include <string>

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

void addDayCommand(const Command& app) {
  const auto [command, options] =
      app.subcommand("day", "Prints the properties of a logical day", run);
  command.option("day", options.day, "YYYYMMDD", "The day (default: the one of --at)");
  command.option("--at", options.at, "INSTANT", "The day that contains this instant (default: now)")
      .excludes({"day"});
  command.option("--start-of-day", options.startOfDay, "HH:MM:SS",
                 "When a day begins (default: midnight)");
  options.firstDayOfWeek.addTo(command);
  command.json(options.json, "Prints one JSON object");
  command.footer(
      "velloro --help lists the options of every command: --now, --zone, --locale, --store.\n\n"
      "Examples:\n"
      "  velloro day\n"
      "  velloro day 20240229 --first-day-of-week monday\n"
      "  velloro day --at 2024-03-07T01:59:59Z --start-of-day 03:00:00 --zone Europe/Berlin "
      "--json");
}

}  // namespace velloro
