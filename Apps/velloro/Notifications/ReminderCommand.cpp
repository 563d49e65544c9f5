#include "velloro/Notifications/ReminderCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Text/String.h"
#include "Host/HostStore.h"
#include "Host/ReminderEdit.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "velloro/Notifications/ReminderReport.h"
#include "velloro/Notifications/ReminderWords.h"
#include "velloro/Notifications/WordChoice.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/CaseArgument.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/ReminderArguments.h"
#include "velloro/Options/TaskArgument.h"
#include "velloro/Output/Output.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velloro {
namespace {

struct ReminderOptions {
  std::string task, time, reminder, mode;
  std::optional<std::string> date, seed, days, sound, timeSensitive;
  bool json = false;
};

void words(const ReminderOptions& options) {
  const HostStore store;
  const Date now = Date::now();
  const auto task = currentTaskArgument(store, options.task, now);
  const YYYYMMDD day =
      options.date ? dayArgument("--date", *options.date) : logRules(*task, now).today();
  const auto words = ReminderWords::of(*task, day, now, WordChoice::argument(options.seed));
  print(options.json ? JSONEncoder{}.encode(words) + "\n" : words.text());
}

void list(const ReminderOptions& options) {
  const HostStore store;
  const Date now = Date::now();
  const auto report = ReminderReport::of(*currentTaskArgument(store, options.task, now));
  print(options.json ? JSONEncoder{}.encode(report) + "\n" : report.text());
}

/// Changes the reminders of a task in one transaction, and prints what has become of them.
template <typename Work>
void change(const ReminderOptions& options, const Work& work) {
  const HostStore store;
  const auto change = store.write([&] {
    const auto task = taskArgument(store, options.task);
    ReminderEdit edit(*task);
    const ReminderType before = edit.settings.reminderType;
    ReminderChange made = work(*task, edit);
    edit.write();
    made.now = ReminderReport::of(*task);
    if (made.now.mode != before) made.switchedFrom = before;
    return made;
  });
  print(options.json ? JSONEncoder{}.encode(change) + "\n" : change.text());
}

std::vector<ReminderLine> lines(const std::vector<TaskReminder>& reminders) {
  std::vector<ReminderLine> lines;
  for (const TaskReminder& reminder : reminders) lines.push_back(ReminderLine::of(reminder));
  return lines;
}

/// On the moment that the user has named the reminder comes, whatever days it has besides.
NewReminder newReminder(const TaskEntity& task, const ReminderOptions& options) {
  const auto [time, day] = reminderTimeArgument("TIME", options.time,
                                                {.startOfDay = task.startOfDay(),
                                                 .timeZone = task.taskCurrentTimeZone(),
                                                 .now = Date::now()});
  NewReminder reminder{.time = time};
  if (options.days) reminder.days = daysArgument("--days", *options.days);
  if (day) reminder.days.insert(*day);
  if (options.sound) {
    reminder.sound = caseArgument<SoundEffect>("--sound", *options.sound, "sound",
                                               "\"velloro reminder add --help\" lists them");
  }
  return reminder;
}

void add(const ReminderOptions& options) {
  change(options, [&](const TaskEntity& task, ReminderEdit& edit) {
    const NewReminder wanted = newReminder(task, options);
    ReminderChange change;
    change.kept = lines(edit.makeCustom());
    change.added = ReminderLine::of(edit.add(wanted));
    return change;
  });
}

bool hasIdWith(const TaskReminder& reminder, const std::string& beginning) {
  return lowercased(reminder.uniqueId.stringValue()).starts_with(lowercased(beginning));
}

/// The reminder that a time, or the beginning of an identifier, names.
TaskReminder reminderArgument(const std::string& text, const std::vector<TaskReminder>& reminders) {
  const auto time = timeIn(text);
  const auto isMeant = [&](const TaskReminder& reminder) {
    return time ? reminder.trigger.timeOfDay == time : !text.empty() && hasIdWith(reminder, text);
  };
  std::vector<TaskReminder> meant;
  std::ranges::copy_if(reminders, std::back_inserter(meant), isMeant);
  const auto isMuted = [](const TaskReminder& reminder) {
    return reminder.trigger.type == TaskReminder::TriggerType::timeOfDayMuted;
  };
  const bool isOnlyMuted = !meant.empty() && std::ranges::all_of(meant, isMuted);
  if (isOnlyMuted) {
    throw UsageError("REMINDER", text,
                     "is muted, so it never comes; it is learned again with each plan");
  }
  std::erase_if(meant, isMuted);
  if (meant.size() == 1) return meant.front();
  if (meant.empty()) {
    throw UsageError("REMINDER", text,
                     "not a reminder of the task; \"velloro reminder list\" lists them");
  }
  std::string which;
  for (const TaskReminder& each : meant) {
    which += (which.empty() ? "" : ", ") + each.uniqueId.stringValue().substr(0, 8) + " (" +
             ReminderLine::of(each).text() + ")";
  }
  throw UsageError("REMINDER", text, "may be " + which + "; write the id");
}

/// Without an automatic time, what is left of them is the user's own choice.
void remove(const ReminderOptions& options) {
  change(options, [&](const TaskEntity&, ReminderEdit& edit) {
    const bool isAutomatic = edit.settings.reminderType == ReminderType::automatic;
    const bool isByTime = timeIn(options.reminder).has_value();
    std::vector<TaskReminder> kept;
    if (isAutomatic && isByTime) kept = edit.makeCustom();
    const TaskReminder removed = reminderArgument(options.reminder, edit.settings.reminders);
    const bool hasTime = removed.trigger.type == TaskReminder::TriggerType::timeOfDay;
    if (isAutomatic && !isByTime && hasTime) kept = edit.makeCustom();
    std::erase_if(kept, [&](const auto& each) { return each.uniqueId == removed.uniqueId; });
    edit.remove(removed.uniqueId);
    ReminderChange change;
    change.removed = ReminderLine::of(removed);
    change.kept = lines(kept);
    return change;
  });
}

bool switchArgument(const std::string& name, const std::string& text) {
  const std::string wanted = lowercased(text);
  if (wanted == "on" || wanted == "off") return wanted == "on";
  throw UsageError(name, text, "write on or off");
}

void setMode(const ReminderOptions& options) {
  change(options, [&](const TaskEntity&, ReminderEdit& edit) {
    const auto mode = caseArgument<ReminderType>("MODE", lowercased(options.mode), "mode");
    ReminderChange change;
    if (mode == ReminderType::custom) change.kept = lines(edit.makeCustom());
    edit.settings.reminderType = mode;
    if (options.timeSensitive) {
      edit.settings.automaticRemindersAreTimeSensitive =
          switchArgument("--time-sensitive", *options.timeSensitive);
    }
    return change;
  });
}

void addWords(const Command& family) {
  const auto [command, options] = addTaskSubcommand(
      family, "words",
      "Lists all that a reminder of a task could say, in the order in which it is tried", words);
  command.option("--date", options.date, "YYYYMMDD", "Day of the reminder (default: today)");
  WordChoice::addOption(command, options.seed);
  command.footer(
      "The arrow marks the text that the reminder shows.\n\n"
      "Examples:\n"
      "  velloro reminder words Read\n"
      "  velloro reminder words Read --date 20240309 --seed 7 --json");
}

void addList(const Command& family) {
  addTaskSubcommand(family, "list", "Lists the reminders of a task", list)
      .command.footer(
          "Times are those of the task's clock. A muted time is never sent: it says when the task\n"
          "matters.\n\n"
          "Examples:\n"
          "  velloro reminder list Read\n"
          "  velloro reminder list Read --json");
}

void addAdd(const Command& family) {
  const auto [command, options] =
      addTaskSubcommand(family, "add", "Adds a reminder by time of day", add);
  command
      .option("time", options.time, "TIME",
              "A time of day, 07:30 or 07:30:15, or a time from now on, +90s, +1m, +1h30m")
      .required();
  command.option("--days", options.days, "DAYS",
                 "Days of the week: mon,wed, weekdays, weekends, daily (default: daily)");
  command.option("--sound", options.sound, "NAME", "A sound of its own");
  std::vector<std::string_view> sounds;
  for (const SoundEffect effect : sortedEffects) sounds.push_back(rawValue(effect));
  command.footer(
      "Of a task with automatic reminders, the times are kept as its own, and the mode becomes\n"
      "custom. A time from now on comes at that moment, whatever the other days are.\n\n"
      "Sounds: " +
      listed(sounds) +
      "\n\nExamples:\n"
      "  velloro reminder add Read 07:30\n"
      "  velloro reminder add Read 21:15 --days mon,wed --sound ping\n"
      "  velloro reminder add Read +1m");
}

void addRemove(const Command& family) {
  const auto [command, options] = addTaskSubcommand(family, "remove", "Removes a reminder", remove);
  command
      .option("reminder", options.reminder, "REMINDER",
              "Its time of day, its id, or the beginning of its id")
      .required();
  command.footer(
      "Without one of its automatic times, a task has the others as its own, and the mode\n"
      "becomes custom.\n\n"
      "Examples:\n"
      "  velloro reminder remove Read 07:30\n"
      "  velloro reminder remove Read 5A0F6C1E");
}

void addMode(const Command& family) {
  const auto [command, options] =
      addTaskSubcommand(family, "mode", "Chooses where reminders come from", setMode);
  command
      .option("mode", options.mode, "MODE",
              "automatic: learned from the log; custom: the task's own; none")
      .required();
  command.option("--time-sensitive", options.timeSensitive, "ON|OFF",
                 "Whether reminders may interrupt who wants no interruption: on or off");
  command.footer(
      "From automatic to custom, the times are kept. Automatic and none give up times of the\n"
      "task's own with the next plan.\n\n"
      "Examples:\n"
      "  velloro reminder mode Read automatic\n"
      "  velloro reminder mode Read custom --time-sensitive on");
}

}  // namespace

void addReminderCommand(const Command& app) {
  const Command family =
      app.subcommand("reminder", "Lists and changes reminders, and shows what they say");
  addList(family);
  addAdd(family);
  addRemove(family);
  addMode(family);
  addWords(family);
}

}  // namespace velloro
