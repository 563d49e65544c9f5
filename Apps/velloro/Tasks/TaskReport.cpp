#include "velloro/Tasks/TaskReport.h"

#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/String.h"
#include "OxCheckableTasks/Icons/IconVisualRepresentation.h"
#include "Tasks/Rows/TaskEntity.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Output/AmountText.h"
#include "velloro/Output/Output.h"

namespace velloro {
namespace {

std::string timesText(std::int64_t count) {
  return count == 1 ? "once" : stringWithFormat("%lld times", static_cast<long long>(count));
}

/// Steps in the period of a total are the total itself.
bool isTotal(const TaskFrequency& frequency) {
  return isAggregate(frequency.dayMode) && frequency.numPartialCompletions > 1;
}

std::string totalText(const TaskFrequency& frequency,
                      const std::optional<AutomaticTaskType>& type) {
  if (type && type->unit) return AmountText(type).amount(type->quantity);
  if (!isTotal(frequency)) return "once";
  return stringWithFormat("%lld", static_cast<long long>(frequency.numPartialCompletions));
}

std::string rhythmText(const TaskFrequency& frequency,
                       const std::optional<AutomaticTaskType>& type) {
  const DayMode mode = frequency.dayMode;
  const std::string period = periodName(periodTypeForCompletionCountCalculation(mode));
  if (mode == DayMode::specificDaysOfWeek) return daysText(frequency.days);
  if (mode == DayMode::specificDaysOfMonth) return "days of the month";
  if (mode == DayMode::dayInterval) {
    return stringWithFormat("every %lld days", static_cast<long long>(frequency.dayInterval));
  }
  return (isAggregate(mode) ? totalText(frequency, type) : timesText(frequency.numCompletions)) +
         " a " + period;
}

std::string recurrenceText(const TaskFrequency& frequency,
                           const std::optional<AutomaticTaskType>& type) {
  const std::string text = rhythmText(frequency, type);
  const bool hasUnit = type && type->unit;
  if (frequency.numPartialCompletions <= 1 || (isTotal(frequency) && !hasUnit)) return text;
  return text + stringWithFormat(", in %lld steps",
                                 static_cast<long long>(frequency.numPartialCompletions));
}

std::string typeText(const AutomaticTaskType& type) {
  std::string text(type.type.rawValue());
  if (type.unit) text += ", " + AmountText(type).amount(type.quantity);
  return text;
}

}  // namespace

std::string daysText(const EnumSet<DayOfWeek>& days) {
  if (days == everyDay()) return "every day";
  std::string text;
  for (const DayOfWeek day : everyDay(DayOfWeek::monday)) {
    if (!days.contains(day)) continue;
    text += (text.empty() ? "" : " ") + weekdayName(day).substr(0, 3);
  }
  return text;
}

std::string textOf(const std::string* text) {
  return text != nullptr ? repairedUTF8(*text) : "";
}

TaskReport TaskReport::of(const TaskEntity& task) {
  const auto icon = task.visualRepresentation();
  const auto color = task.taskColor();
  const auto frequency = task.frequency();
  const auto type = task.automaticTaskType();
  return {.uniqueId = textOf(task.text(TaskAttributes::uniqueId)),
          .title = textOf(task.text(TaskAttributes::title)),
          .status = std::string(caseNames<TaskStatus::trashed>().rawValue(task.taskStatus())),
          .displayOrder = task.taskDisplayOrder(),
          .frequency = frequency,
          .recurrence = recurrenceText(frequency, type),
          .isNegative = task.value(TaskAttributes::isNegative),
          .automaticTaskType = type,
          .icon = icon ? std::optional(repairedUTF8(icon->text())) : std::nullopt,
          .color = color ? std::optional(color->toHex()) : std::nullopt,
          .startOfDay = task.startOfDay(),
          .firstDayOfWeek = task.firstDayOfWeek(),
          .weekBegins = weekdayName(task.firstDayOfWeek()),
          .timeZone = std::string(task.taskCurrentTimeZone().identifier()),
          .created = task.value(TaskAttributes::created)};
}

std::string TaskReport::shortId() const {
  return terminalText(uniqueId.substr(0, 8));
}

std::string TaskReport::due() const {
  return (isNegative ? "avoid, " : "") + recurrence;
}

std::string TaskReport::text() const {
  std::string text = terminalText(title) + "\n\n";
  const auto line = [&](const char* name, const std::string& value) {
    text += padded(name, 14) + " " + terminalText(value) + "\n";
  };
  line("id", uniqueId);
  line("status", status);
  line(isNegative ? "to avoid" : "due", recurrence);
  if (automaticTaskType) line("type", typeText(*automaticTaskType));
  line("page", std::to_string(displayOrder.pageNumber.value) + ", place " +
                   std::to_string(displayOrder.position));
  if (icon) line("icon", *icon);
  if (color) line("colour", *color);
  line("start of day", startOfDay.debugDescription());
  line("week begins", weekBegins);
  line("zone", timeZone);
  if (created) line("created", created->iso8601());
  return text;
}

std::string table(const std::vector<TaskReport>& reports) {
  if (reports.empty()) return "No tasks yet; \"velloro task add TITLE\" adds one.\n";
  std::string text;
  for (const TaskReport& report : reports) {
    text += padded(report.shortId(), 8) + "  " + padded(terminalText(report.title), 32) + " " +
            padded(report.status, 9) + " " + report.due() + "\n";
  }
  return text;
}

}  // namespace velloro
