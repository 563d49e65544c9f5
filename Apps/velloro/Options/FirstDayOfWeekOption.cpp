#include "velloro/Options/FirstDayOfWeekOption.h"

#include "Foundation/Text/Locale.h"
#include "VelloroCore/Frequency/DayModeRules.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"

namespace velloro {
namespace {

constexpr const char* name = "--first-day-of-week";

}  // namespace

void FirstDayOfWeekOption::addTo(const Command& command) {
  command.option(name, text, "DAY", "When a week begins (default: the locale's)");
}

DayOfWeek FirstDayOfWeekOption::value(DayMode mode, const FrequencyOptions& chosen) const {
  const DayOfWeek day = value();
  chosen.expectUse(name, text, usesFirstDayOfWeek(mode));
  return day;
}

DayOfWeek FirstDayOfWeekOption::value() const {
  if (text) return weekdayArgument(name, *text);
  return localesFirstDayOfWeek(Locale::current());
}

}  // namespace velloro
