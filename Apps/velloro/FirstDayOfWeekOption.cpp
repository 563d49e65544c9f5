#include "velloro/FirstDayOfWeekOption.h"

#include "velloro/Arguments.h"

#include <CLI/CLI.hpp>

namespace velloro {

void FirstDayOfWeekOption::addTo(CLI::App& command) {
  command.add_option("--first-day-of-week", text, "When a week begins (default: the locale's)")
      ->type_name("DAY");
}

DayOfWeek FirstDayOfWeekOption::value() const {
  if (text) return weekdayArgument("--first-day-of-week", *text);
  return defaultFirstDayOfWeek().value_or(DayOfWeek::sunday);
}

}  // namespace velloro
