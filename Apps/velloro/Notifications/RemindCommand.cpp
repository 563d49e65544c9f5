#include "velloro/Notifications/RemindCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Text/String.h"
#include "Host/HostStore.h"
#include "Host/NotificationUpdates.h"
#include "Settings/SiriExtensionUtilities.h"
#include "Tasks/Rows/TaskEntity.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/TaskArgument.h"
#include "velloro/Output/Output.h"

#include <string>

namespace velloro {
namespace {

struct RemindOptions {
  std::string task, at;
  bool json = false;
};

using SiriReminder = SiriExtensionUtilities::SiriReminder;

SiriReminder wantedReminder(const TaskEntity& task, const RemindOptions& options) {
  const Date date = instantArgument("--at", options.at);
  if (date <= Date::now()) {
    throw UsageError("--at", options.at, "has passed; write an instant to come");
  }
  const auto id = task.taskUniqueId();
  if (!id) throw HostError(inQuotes(task.title()) + " has no identifier to be reminded of by");
  if (!activeStatuses.contains(task.taskStatus())) {
    throw HostError(inQuotes(task.title()) + " is " +
                    std::string(caseNames<TaskStatus::trashed>().rawValue(task.taskStatus())) +
                    ", so no reminder of it is sent; \"velloro task resume\" restores it");
  }
  return {.uniqueId = UniqueID::create(), .taskId = *id, .date = date};
}

void remind(const RemindOptions& options) {
  const HostStore store;
  const auto task = taskArgument(store, options.task);
  const SiriReminder reminder = wantedReminder(*task, options);
  const auto kept = SiriExtensionUtilities::shared()->editSiriReminders(
      [&](auto& reminders) { reminders.push_back(reminder); });
  if (!kept) throw HostError("nothing was saved: " + kept.error()->localizedDescription());
  NotificationUpdates::shared().note(task);
  if (options.json) {
    return print(JSONEncoder{.dateForm = DateForm::iso8601}.encode(reminder) + "\n");
  }
  print("A reminder of " + inQuotes(terminalText(task->title())) + " comes at " +
        reminder.date.iso8601() + "\n");
}

}  // namespace

void addRemindCommand(const Command& app) {
  const auto [command, options] =
      app.subcommand("remind", "Sends one reminder of a task at an instant", remind);
  addTaskArgument(command, options.task);
  command.option("--at", options.at, "INSTANT", "When it comes: an instant to come").required();
  command.json(options.json, "Prints one JSON object");
  command.footer(
      "It comes once, beside the task's other reminders, and can't be taken back.\n\n"
      "Example:\n"
      "  velloro remind Read --at 2024-03-07T18:00:00+01:00");
}

}  // namespace velloro
