#include "velloro/Tasks/TaskReport.h"

#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/String.h"
#include "OxCheckableTasks/Icons/IconVisualRepresentation.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Output/AmountText.h"
#include "velloro/Output/Output.h"

namespace velloro {
namespace {

std::string countText(std::int64_t count, const char* one, const char* many) {
  return count == 1 ? one : stringWithFormat(many, static_cast<long long>(count));
}

std::string daysText(const EnumSet<DayOfWeek>& days) {
  if (days == everyDay()) return "every day";
  std::string text;
  for (const DayOfWeek day : everyDay(DayOfWeek::monday)) {
    if (!days.contains(day)) continue;
    text += (text.empty() ? "" : " ") + weekdayName(day).substr(0, 3);
  }
  return text;
}

std::string recurrenceText(const TaskFrequency& frequency) {
  switch (frequency.dayMode) {
    case DayMode::specificDaysOfWeek:
      return daysText(frequency.days);
    case DayMode::dayInterval:
      return stringWithFormat("every %lld days", static_cast<long long>(frequency.dayInterval));
    case DayMode::numberOfDaysInWeek:
      return countText(frequency.numCompletions, "1 day a week", "%lld days a week");
    case DayMode::numberOfDaysInFortnight:
      return countText(frequency.numCompletions, "1 day a fortnight", "%lld days a fortnight");
    case DayMode::numberOfDaysInMonth:
      return countText(frequency.numCompletions, "1 day a month", "%lld days a month");
    case DayMode::numberOfDaysInYear:
      return countText(frequency.numCompletions, "1 day a year", "%lld days a year");
    case DayMode::specificDaysOfMonth:
      return "days of the month";
    default:
      return "once a " + periodName(measurementDuration(frequency.dayMode));
  }
}

std::string typeText(const AutomaticTaskType& type) {
  std::string text(type.type.rawValue());
  if (type.unit) text += ", " + AmountText(type).amount(type.quantity);
  return text;
}

}  // namespace

std::string textOf(const std::string* text) {
  return text != nullptr ? repairedUTF8(*text) : "";
}

std::string frequencyText(const TaskFrequency& frequency) {
  std::string text = recurrenceText(frequency);
  if (frequency.numPartialCompletions > 1) {
    text += stringWithFormat(", in %lld steps",
                             static_cast<long long>(frequency.numPartialCompletions));
  }
  return text;
}

TaskReport TaskReport::of(const TaskEntity& task) {
  const auto icon = task.visualRepresentation();
  const auto color = task.taskColor();
  return {.uniqueId = textOf(task.text(TaskAttributes::uniqueId)),
          .title = textOf(task.text(TaskAttributes::title)),
          .status = std::string(caseNames<TaskStatus::trashed>().rawValue(task.taskStatus())),
          .displayOrder = task.taskDisplayOrder(),
          .frequency = task.frequency(),
          .isNegative = task.value(TaskAttributes::isNegative),
          .automaticTaskType = task.automaticTaskType(),
          .icon = icon ? std::optional(repairedUTF8(icon->text())) : std::nullopt,
          .color = color ? std::optional(color->toHex()) : std::nullopt,
          .startOfDay = task.startOfDay(),
          .firstDayOfWeek = task.firstDayOfWeek(),
          .timeZone = std::string(task.taskCurrentTimeZone().identifier()),
          .created = task.value(TaskAttributes::created)};
}

std::string TaskReport::shortId() const {
  return terminalText(uniqueId.substr(0, 8));
}

std::string TaskReport::text() const {
  std::string text = terminalText(title) + "\n\n";
  const auto line = [&](const char* name, const std::string& value) {
    text += padded(name, 14) + " " + terminalText(value) + "\n";
  };
  line("id", uniqueId);
  line("status", status);
  line(isNegative ? "to avoid" : "due", frequencyText(frequency));
  if (automaticTaskType) line("type", typeText(*automaticTaskType));
  line("page", std::to_string(displayOrder.pageNumber.value) + ", place " +
                   std::to_string(displayOrder.position));
  if (icon) line("icon", *icon);
  if (color) line("colour", *color);
  line("start of day", startOfDay.debugDescription());
  line("week begins", weekdayName(firstDayOfWeek));
  line("zone", timeZone);
  if (created) line("created", created->iso8601());
  return text;
}

std::string table(const std::vector<TaskReport>& reports) {
  if (reports.empty()) return "No tasks yet; \"velloro task add TITLE\" adds one.\n";
  std::string text;
  for (const TaskReport& report : reports) {
    text += padded(report.shortId(), 8) + "  " + padded(terminalText(report.title), 32) + " " +
            padded(report.status, 9) + " " + (report.isNegative ? "avoid, " : "") +
            frequencyText(report.frequency) + "\n";
  }
  return text;
}

}  // namespace velloro
