#include "velloro/Tasks/TaskFieldOptions.h"

#include "Foundation/Text/String.h"
#include "Tasks/Rows/TaskEntity.h"
#include "VelloroCore/Frequency/DayModeRules.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/CaseArgument.h"
#include "velloro/Options/Command.h"

namespace velloro {
namespace {

OxCodableColor colorArgument(const std::string& name, const std::string& text) {
  if (const auto color = OxCodableColor::fromHex(text)) return *color;
  throw UsageError(name, text, "not a colour; write one as 3F91CC");
}

template <typename T, typename Read>
std::optional<T> given(const char* name, const std::optional<std::string>& text, Read read) {
  return text ? std::optional<T>(read(name, *text)) : std::nullopt;
}

}  // namespace

void TaskFieldOptions::addTo(const Command& command) {
  frequency.addTo(command);
  command.flag("--negative", isNegative, "A habit to avoid");
  type.addTo(command).excludes({"--total"});
  command.option("--timer", timer, "SECONDS", "The duration of the timer, for each step")
      .excludes({"--type", "--target", "--unit"});
  command.option("--start-of-day", startOfDay, "HH:MM:SS",
                 "When days begin for the task (default: the setting)");
  command.option("--first-day-of-week", firstDayOfWeek, "DAY",
                 "When weeks begin for the task (default: the setting)");
  command.option("--zone", zone, "ID", "A fixed time zone (default: always that of the device)");
  command.option("--icon", icon, "NAME", "The icon; \"velloro icons\" lists them");
  command.option("--color", color, "RRGGBB", "The colour (default: that of the theme)");
  command.option("--page", page, "N", "The page, 0 to 3");
}

TypeOptions TaskFieldOptions::targetOptions() const {
  TypeOptions options = type;
  if (!type.type || !frequency.total) return options;
  options.target = frequency.total;
  options.targetName = "--total";
  return options;
}

std::optional<AutomaticTaskType> TaskFieldOptions::automaticTaskType(
    const TaskFrequency& of) const {
  if (!timer) return targetOptions().value(measurementDuration(of.dayMode));
  constexpr double day = 86400;
  const double seconds = numberBetween("--timer", *timer, 1, day, "1 to 86400 seconds");
  auto made =
      AutomaticTaskType::timer(seconds, of.numPartialCompletions, TypeUnit::durationSeconds);
  expectToFit("--timer", *timer, made, measurementDuration(of.dayMode));
  return made;
}

TaskFields TaskFieldOptions::fields(const TaskEntity* edited) const {
  const bool isShared =
      edited != nullptr && edited->taskShareStatus() == TaskShareStatus::isSharedWithMe;
  const TaskFrequency base =
      edited != nullptr ? edited->frequency() : TaskFrequency::defaultFrequency;
  const auto known = edited != nullptr ? edited->automaticTaskType() : std::nullopt;
  if (known && known->unit && frequency.total && !type.type && !timer) {
    throw UsageError("--total", *frequency.total, "the task has a target; give its --type, too");
  }
  TaskFields fields{.title = given<std::string>("TITLE", title, titleArgument)};
  if (frequency.areGiven()) {
    fields.frequency = frequency.over(base, type.type.has_value());
  }
  const TaskFrequency& recurs = fields.frequency ? *fields.frequency : base;
  fields.automaticTaskType = automaticTaskType(recurs);
  if (type.areRefined() && !type.type) {
    if (!known || timer) {
      const auto& given = type.speed ? type.speed : type.workouts ? type.workouts : type.dataSource;
      throw UsageError(type.speed      ? "--speed"
                       : type.workouts ? "--workouts"
                                       : "--data-source",
                       *given, "only with a --type");
    }
    fields.automaticTaskType = type.refined(*known);
  }
  if (isNegative) fields.isNegative = true;
  if (isPositive) fields.isNegative = false;
  fields.startOfDay = given<HHMMSS>("--start-of-day", startOfDay, timeArgument);
  fields.firstDayOfWeek = given<DayOfWeek>("--first-day-of-week", firstDayOfWeek, weekdayArgument);
  frequency.expectUse("--first-day-of-week", firstDayOfWeek,
                      isShared || usesFirstDayOfWeek(recurs.dayMode));
  fields.timeZone = given<TimeZone>("--zone", zone, zoneArgument);
  fields.color = given<OxCodableColor>("--color", color, colorArgument);
  if (icon) {
    fields.icon =
        caseArgument<IconManagerIcon>("--icon", *icon, "icon", "\"velloro icons\" lists them");
  }
  fields.page = given<TaskPageNumber>("--page", page, pageArgument);
  return fields;
}

}  // namespace velloro
