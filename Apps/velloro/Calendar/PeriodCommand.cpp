#include "velloro/Calendar/PeriodCommand.h"

#include "velloro/Calendar/PeriodReport.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/FirstDayOfWeekOption.h"
#include "velloro/Options/FrequencyOptions.h"
#include "velloro/Output/Output.h"

#include <optional>
#include <string>

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

}  // namespace

void addPeriodCommand(const Command& app) {
  const auto [command, options] =
      app.subcommand("period", "Prints the period of a task that contains a day", run);
  options.frequency.addTo(command);
  command.option("--date", options.date, "YYYYMMDD", "A day of the period (default: today)");
  options.firstDayOfWeek.addTo(command);
  command.json(options.json, "Prints one JSON object");
  command.footer(modesFooter() +
                 "\nExamples:\n"
                 "  velloro period --times 3 --per week\n"
                 "  velloro period --mode specificDaysOfWeek --days mon,wed,fri --date 20240306\n"
                 "  velloro period --mode aggregateOverFortnight --date 20000108 "
                 "--first-day-of-week sunday --json");
}

}  // namespace velloro
