#include "velloro/Tasks/TaskFieldOptions.h"

#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/String.h"
#include "VelloroCore/Frequency/DayModeRules.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/CaseArgument.h"

#include <CLI/CLI.hpp>

namespace velloro {
namespace {

OxCodableColor colorArgument(const std::string& name, const std::string& text) {
  if (const auto color = OxCodableColor::fromHex(text)) return *color;
  throw UsageError(name + " " + inQuotes(text) + ": not a colour; write one as 3F91CC");
}

std::string titleArgument(const std::string& name, const std::string& text) {
  if (text.empty()) throw UsageError(name + " \"\": empty; write what the task is called");
  if (!hasControlCharacters(text)) return text;
  throw UsageError(name + " " + inQuotes(text) +
                   ": has line breaks or other control characters; write a line of plain text");
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
  add("--timer", timer, "SECONDS", "How long a timer runs, of each step")
      ->excludes("--type")
      ->excludes("--target")
      ->excludes("--unit");
  add("--start-of-day", startOfDay, "HH:MM:SS", "When its days begin (default: the setting)");
  add("--first-day-of-week", firstDayOfWeek, "DAY", "When its weeks begin (default: the setting)");
  add("--zone", zone, "ID", "The time zone to pin it to (default: the device's, wherever it is)");
  add("--icon", icon, "NAME", "What it shows; \"velloro icons\" lists them");
  add("--color", color, "RRGGBB", "Its colour (default: the theme's)");
  add("--page", page, "N", "Its page, from 0 on");
}

std::optional<AutomaticTaskType> TaskFieldOptions::automaticTaskType(
    const TaskFrequency& of) const {
  if (!timer) return type.value(measurementDuration(of.dayMode));
  const double seconds = amountArgument("--timer", *timer);
  if (seconds < 1 || seconds > 86400) {
    throw UsageError("--timer " + inQuotes(*timer) + ": out of range; write 1 to 86400 seconds");
  }
  auto made =
      AutomaticTaskType::timer(seconds, of.numPartialCompletions, TypeUnit::durationSeconds);
  expectToFit("--timer", *timer, made, measurementDuration(of.dayMode));
  return made;
}

TaskFields TaskFieldOptions::fields(const TaskFrequency& base, bool isShared) const {
  TaskFields fields{.title = given<std::string>("TITLE", title, titleArgument)};
  if (frequency.areGiven()) fields.frequency = frequency.over(base);
  const TaskFrequency& recurs = fields.frequency ? *fields.frequency : base;
  fields.automaticTaskType = automaticTaskType(recurs);
  if (isNegative) fields.isNegative = true;
  if (isPositive) fields.isNegative = false;
  fields.startOfDay = given<HHMMSS>("--start-of-day", startOfDay, timeArgument);
  fields.firstDayOfWeek = given<DayOfWeek>("--first-day-of-week", firstDayOfWeek, weekdayArgument);
  expectUse("--first-day-of-week", firstDayOfWeek, recurs.dayMode,
            isShared || usesFirstDayOfWeek(recurs.dayMode));
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
