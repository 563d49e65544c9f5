#include "velloro/TaskFieldOptions.h"

#include "Foundation/String.h"
#include "velloro/Arguments.h"
#include "velloro/CaseArgument.h"

#include <CLI/CLI.hpp>

namespace velloro {
namespace {

OxCodableColor colorArgument(const std::string& name, const std::string& text) {
  if (const auto color = OxCodableColor::fromHex(text)) return *color;
  throw UsageError(name + " " + inQuotes(text) + ": not a colour; write one as 3F91CC");
}

template <typename T, typename Read>
std::optional<T> given(const char* name, const std::optional<std::string>& text, Read read) {
  return text ? std::optional<T>(read(name, *text)) : std::nullopt;
}

}  // namespace

void TaskFieldOptions::addTo(CLI::App& command) {
  const auto add = [&](const char* name, auto& value, const char* placeholder, const char* help) {
    return command.add_option(name, value, help)->type_name(placeholder);
  };
  frequency.addTo(command);
  command.add_flag("--negative", isNegative, "A habit to avoid")->disable_flag_override();
  type.addTo(command);
  add("--timer", timer, "SECONDS", "How long a timer runs, of each step")->excludes("--type");
  add("--start-of-day", startOfDay, "HH:MM:SS", "When its days begin (default: the setting)");
  add("--first-day-of-week", firstDayOfWeek, "DAY", "When its weeks begin (default: the setting)");
  add("--zone", zone, "ID", "The time zone to pin it to (default: the device's, wherever it is)");
  add("--icon", icon, "NAME", "What it shows; \"velloro icons\" lists them");
  add("--color", color, "RRGGBB", "Its colour (default: the theme's)");
  add("--page", page, "N", "Its page, from 0 on");
}

std::optional<AutomaticTaskType> TaskFieldOptions::automaticTaskType(std::int64_t parts) const {
  if (!timer) return type.value();
  const double seconds = amountArgument("--timer", *timer);
  if (seconds < 1 || seconds > 86400) {
    throw UsageError("--timer " + inQuotes(*timer) + ": out of range; write 1 to 86400 seconds");
  }
  return AutomaticTaskType::timer(seconds, parts, TypeUnit::durationSeconds);
}

TaskFields TaskFieldOptions::fields(const TaskFrequency& base) const {
  if (title && title->empty()) {
    throw UsageError("TITLE \"\": empty; write what the task is called");
  }
  TaskFields fields{.title = title};
  if (frequency.areGiven()) fields.frequency = frequency.over(base);
  fields.automaticTaskType =
      automaticTaskType(fields.frequency.value_or(base).numPartialCompletions);
  if (isNegative) fields.isNegative = true;
  if (isPositive) fields.isNegative = false;
  fields.startOfDay = given<HHMMSS>("--start-of-day", startOfDay, timeArgument);
  fields.firstDayOfWeek = given<DayOfWeek>("--first-day-of-week", firstDayOfWeek, weekdayArgument);
  fields.timeZone = given<TimeZone>("--zone", zone, zoneArgument);
  fields.color = given<OxCodableColor>("--color", color, colorArgument);
  if (icon) {
    fields.icon =
        caseArgument<IconManagerIcon>("--icon", *icon, "icon", "\"velloro icons\" lists them");
  }
  if (page) {
    const auto number = countArgument("--page", *page);
    if (number > 300) throw UsageError("--page " + inQuotes(*page) + ": there are pages 0 to 300");
    fields.page = TaskPageNumber{number};
  }
  return fields;
}

}  // namespace velloro
