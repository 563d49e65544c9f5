#include "velloro/Agent/TerminalVoices.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Process/ShellCommand.h"
#include "Foundation/Text/String.h"
#include "OxKit/Localization.h"
#include "VelloroCore/Reminders/NotificationTextKeys.h"
#include "velloro/Notifications/NotificationLine.h"
#include "velloro/Output/Output.h"

#include <cstdio>

namespace velloro {
namespace {

std::string timeText(Date date) {
  return HHMMSS::fromDate(date, TimeZone::current()).debugDescription();
}

}  // namespace

std::string reminderJSON(const OpenReminder& reminder) {
  PropertyList report = PropertyList::fromJSON(JSONEncoder{.dateForm = DateForm::iso8601}.encode(
      NotificationLine::of(reminder.notification)));
  PropertyList::Dictionary& fields = *report.dictionary();
  if (reminder.data) {
    fields["day"] = reminder.day.intValue();
    if (reminder.data->task.externalUrl) fields["url"] = *reminder.data->task.externalUrl;
  }
  PropertyList::Array names;
  if (reminder.category) {
    constexpr auto words = caseNames<NotificationAction::sendMessage>();
    for (const NotificationAction action : actions(*reminder.category)) {
      names.emplace_back(std::string(words.rawValue(action)));
    }
  }
  fields["actions"] = names;
  return report.json();
}

void PrintVoice::show(const OpenReminder& reminder, bool) {
  print(isJSON_ ? reminderJSON(reminder) + "\n"
                : timeText(Date::now()) + "  " +
                      NotificationLine::of(reminder.notification).text() + "\n");
  std::fflush(stdout);
}

void PrintVoice::showSummary(const std::vector<OpenReminder>& missed, bool isQuiet) {
  if (isJSON_) {
    for (const OpenReminder& each : missed) show(each, isQuiet);
    return;
  }
  std::string text =
      timeText(Date::now()) + "  " +
      localized(notification_text::missedReminders, {static_cast<std::int64_t>(missed.size())}) +
      "\n";
  for (const OpenReminder& each : missed) {
    text += "          " + NotificationLine::of(each.notification).text() + "\n";
  }
  print(text);
  std::fflush(stdout);
}

void ExecVoice::show(const OpenReminder& reminder, bool) {
  queue_.async([command = command_, input = reminderJSON(reminder) + "\n"] {
    const auto ran = runShellCommand(command, input, longest);
    if (!ran) Environment::current().report(ran.error()->localizedDescription());
  });
}

void ExecVoice::showSummary(const std::vector<OpenReminder>& missed, bool isQuiet) {
  for (const OpenReminder& each : missed) show(each, isQuiet);
}

}  // namespace velloro
