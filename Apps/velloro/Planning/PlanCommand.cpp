#include "velloro/Planning/PlanCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Text/String.h"
#include "Host/NotificationUpdates.h"
#include "Host/Snooze.h"
#include "Notifications/Planning/NotificationManager.h"
#include "Tasks/Rows/TaskEntity.h"
#include "velloro/Notifications/WordChoice.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/TaskArgument.h"
#include "velloro/Output/Output.h"
#include "velloro/Planning/PlanReport.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace velloro {
namespace {

struct PlanOptions {
  std::vector<std::string> tasks;
  std::string task;
  std::optional<std::string> seed, duration;
  bool explain = false, apply = false, json = false, cancel = false;
};

PlanReport planned(const HostStore& store, const PlanOptions& options) {
  const Date now = Date::now();
  PlanReport::Wanted wanted{.explains = options.explain};
  for (const auto& name : options.tasks) {
    const auto task = currentTaskArgument(store, name, now);
    if (std::ranges::count(wanted.tasks, task) == 0) wanted.tasks.push_back(task);
  }
  return PlanReport::of(store, wanted, now, WordChoice::argument(options.seed));
}

void plan(const PlanOptions& options) {
  if (options.apply) {
    if (!options.tasks.empty() || options.seed) {
      throw UsageError(
          "--apply: plans all tasks with words chosen at random; write no TASK and "
          "no --seed");
    }
    NotificationUpdates::shared().rebuildAll();
  }
  const HostStore store;
  const PlanReport report = planned(store, options);
  print(options.json ? JSONEncoder{.dateForm = DateForm::iso8601}.encode(report) + "\n"
                     : report.text());
}

void endSnooze(const HostStore& store, const PlanOptions& options) {
  if (options.duration) throw UsageError("--cancel: not with --for");
  const auto task = taskArgument(store, options.task);
  if (!snoozedUntil(task->uniqueId(), Date::now())) {
    throw HostError(inQuotes(task->title()) + ": no reminder is put off");
  }
  NotificationManager::shared().schedule(velloro::endSnooze(task->uniqueId()));
  NotificationUpdates::shared().note(task);
  print(options.json ? std::string("{\"cancelled\":true}\n")
                     : "The reminder does not come back by itself\n");
}

void snooze(const PlanOptions& options) {
  const HostStore store;
  if (options.cancel) return endSnooze(store, options);
  std::optional<TimeInterval> duration;
  if (options.duration) duration = durationArgument("--for", *options.duration);
  const Snooze snooze = snoozeReminder(
      store, [&] { return taskArgument(store, options.task); }, duration, Date::now());
  if (options.json) {
    return print(JSONEncoder{}.encode(PropertyList(PropertyList::Dictionary{
                     {"reminder", snooze.timeOfDay}, {"date", snooze.date.iso8601()}})) +
                 "\n");
  }
  const TimeZone zone = TimeZone::current();
  const auto dayOf = [zone](Date date) { return YYYYMMDD::fromDate(HHMMSS::midnight, date, zone); };
  const YYYYMMDD day = dayOf(snooze.date);
  print("The reminder of " + snooze.timeOfDay + " comes back " +
        (day == dayOf(Date::now()) ? "" : "on " + day.debugDescription() + " ") + "at " +
        HHMMSS::fromDate(snooze.date, zone).debugDescription() + "\n");
}

void badge(const PlanOptions& options) {
  const HostStore store;
  PlanReport report = planned(store, options);
  std::erase_if(report.requests, [](const auto& request) { return !request.badge; });
  report.cancelDelivered.clear();
  std::erase_if(report.cancelPending, [](const auto& id) { return !id.starts_with("b."); });
  if (options.json) return print(JSONEncoder{.dateForm = DateForm::iso8601}.encode(report) + "\n");
  print(report.requests.empty() ? "There is no badge: \"settings set nmTaskCountBadgeDisabled "
                                  "false\" turns it on\n"
                                : report.text());
}

}  // namespace

void addPlanCommand(const Command& app) {
  const auto [command, options] = app.subcommand(
      "plan", "Shows which reminders will come in the next three days, and why", plan);
  command.option("TASK", options.tasks, "TEXT", "Titles or ids of tasks (default: all)");
  command.flag("--explain", options.explain,
               "Says why each day has reminders or none, and where times come from");
  command.flag("--apply", options.apply, "Schedules all of it in the notification centre");
  WordChoice::addOption(command, options.seed);
  command.json(options.json, "Prints one JSON object");
  command.footer(
      "Without --apply nothing is written anywhere. From the first --apply on, each command that\n"
      "changes something plans again what it has changed.\n\n"
      "Examples:\n"
      "  velloro plan\n"
      "  velloro plan Read --explain\n"
      "  velloro plan --apply");
}

void addSnoozeCommand(const Command& app) {
  const auto [command, options] = app.subcommand(
      "snooze", "Puts off the newest reminder of a task whose time has come, else the next",
      snooze);
  addTaskArgument(command, options.task);
  command.option("--for", options.duration, "DURATION",
                 "How long: 90s, 30m, 2h (default: the setting nmSnoozeDuration)");
  command.flag("--cancel", options.cancel, "Puts nothing off: what is put off does not come back");
  command.json(options.json, "Prints one JSON object");
  command.footer(
      "The reminder comes back unless the task is done by then.\n\n"
      "Examples:\n"
      "  velloro snooze Read\n"
      "  velloro snooze Read --for 2h\n"
      "  velloro snooze Read --cancel");
}

void addBadgeCommand(const Command& app) {
  const auto [command, options] = app.subcommand(
      "badge", "Shows how many tasks are incomplete, and how that changes in the next days", badge);
  command.json(options.json, "Prints one JSON object");
  command.footer("Examples:\n  velloro badge\n  velloro badge --json");
}

}  // namespace velloro
