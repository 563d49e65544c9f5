#include "velloro/Notifications/ReminderReport.h"

#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/String.h"
#include "Tasks/Rows/TaskEntity.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Output/Output.h"
#include "velloro/Tasks/TaskReport.h"

#include <algorithm>

namespace velloro {
namespace {

using Type = TaskReminder::TriggerType;

std::string triggerName(Type type) {
  return std::string(caseNames<Type::durationBeforeFinish>().rawValue(type));
}

std::optional<std::string> timeText(const std::optional<HHMMSS>& time) {
  return time.transform(&HHMMSS::debugDescription);
}

std::string placeText(const TriggerRegion& region) {
  const std::string where =
      region.title ? *region.title : stringWithFormat("%g, %g", region.latitude, region.longitude);
  return std::string(region.notifyOnEntry ? "on arriving at " : "on leaving ") + where;
}

std::string momentText(const ReminderLine& line) {
  if (line.time) return *line.time;
  if (line.region) return placeText(*line.region);
  const bool isFromStart = line.type == rawValue(Type::durationAfterStart);
  return stringWithFormat("%g seconds %s", line.duration.value_or(0),
                          isFromStart ? "after the start" : "before the end");
}

std::string sourceText(const ReminderLine& line) {
  switch (*line.source) {
    using enum AutomaticTimeSource;
    case history:
      return stringWithFormat("learned from %lld entries around %s",
                              static_cast<long long>(line.samples.value_or(0)),
                              line.median.value_or("").c_str());
    case filled:
      return "some hours from a learned time";
    case default_:
      return "nothing learned yet";
    case fixed:
      return "by the type of the task";
    case sleep:
      return "before going to bed";
    case owner:
      break;
  }
  return "of the owner of the task";
}

std::string noteText(const ReminderLine& line) {
  std::vector<std::string> notes;
  if (line.muted) notes.push_back("muted");
  if (line.sound) notes.push_back("sound " + std::string(rawValue(*line.sound)));
  if (line.source) notes.push_back(sourceText(line));
  return listed({notes.begin(), notes.end()});
}

}  // namespace

ReminderLine ReminderLine::of(const TaskReminder& reminder, const AutomaticTime* automatic) {
  ReminderLine line{.id = reminder.uniqueId.stringValue(),
                    .type = std::string(rawValue(reminder.trigger.type)),
                    .trigger = triggerName(reminder.trigger.type),
                    .time = timeText(reminder.trigger.timeOfDay),
                    .duration = reminder.trigger.duration,
                    .region = reminder.trigger.region,
                    .days = {},
                    .dayIndexesFromStart = reminder.dayIndexesFromStart,
                    .dayIndexesFromFinish = reminder.dayIndexesFromFinish,
                    .sound = reminder.sound,
                    .muted = {},
                    .source = {},
                    .median = {},
                    .samples = {},
                    .daysOfWeek = reminder.daysOfWeek};
  for (const DayOfWeek day : everyDay(DayOfWeek::monday)) {
    if (reminder.daysOfWeek.contains(day)) line.days.push_back(weekdayName(day));
  }
  if (reminder.trigger.type == Type::timeOfDayMuted) line.muted = true;
  if (automatic == nullptr) return line;
  line.source = automatic->source;
  line.median = timeText(automatic->median);
  line.samples = automatic->samples;
  return line;
}

std::string ReminderLine::text() const {
  const std::string when = daysText(daysOfWeek);
  return terminalText(momentText(*this)) + " " + (when.empty() ? "on no day" : when);
}

ReminderReport ReminderReport::of(const TaskEntity& task) {
  const auto present = TaskReminders::of(task);
  const TaskNotificationSettings stored = task.notificationSettings();
  ReminderReport report{
      .task = textOf(task.text(TaskAttributes::uniqueId)),
      .title = textOf(task.text(TaskAttributes::title)),
      .mode = present.settings.reminderType,
      .timeSensitive = present.settings.automaticRemindersAreTimeSensitive.value_or(false),
      .reminders = {}};
  for (const TaskReminder& reminder : present.settings.reminders) {
    auto line = ReminderLine::of(reminder, present.automaticTime(reminder));
    const bool isStored = std::ranges::find(stored.reminders, reminder.uniqueId,
                                            &TaskReminder::uniqueId) != stored.reminders.end();
    if (!isStored) line.id.reset();
    report.reminders.push_back(std::move(line));
  }
  return report;
}

std::string ReminderReport::text() const {
  std::string text = terminalText(title) + ": " + std::string(rawValue(mode)) +
                     (timeSensitive ? ", time-sensitive" : "") + "\n";
  if (reminders.empty()) return text + "No reminders.\n";
  std::vector<std::vector<std::string>> rows;
  for (const ReminderLine& line : reminders) {
    rows.push_back({line.id ? line.id->substr(0, 8) : "", line.text(), noteText(line)});
  }
  return text + aligned(rows);
}

std::string ReminderChange::text() const {
  std::string text;
  if (switchedFrom) {
    text += inQuotes(terminalText(now.title)) + " was " + std::string(rawValue(*switchedFrom)) +
            " and is " + std::string(rawValue(now.mode)) + " now";
    for (const ReminderLine& line : kept) {
      text += (&line == kept.data() ? "; it keeps " : ", ") + line.text();
    }
    text += "\n";
  }
  if (added) text += "Added " + added->text() + "\n";
  if (removed) text += "Removed " + removed->text() + "\n";
  return text + now.text();
}

}  // namespace velloro
