#include "velloro/Timers/TimerCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Process/Interrupts.h"
#include "Foundation/Process/MainLoop.h"
#include "Foundation/Text/String.h"
#include "Host/TimedTaskHost.h"
#include "Tasks/Log/StoredEntries.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/TaskArgument.h"
#include "velloro/Output/Output.h"
#include "velloro/Tasks/StatusReport.h"
#include "velloro/Timers/TimerReport.h"
#include "velloro/Timers/TimerWait.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velloro {
namespace {

using Run = TimedTaskManagerEntry;
using State = TimerReport::State;

struct TimerOptions {
  std::string task;
  std::optional<std::string> listed;
  bool isWaiting = false;
  bool isDiscarded = false;
  bool json = false;
};

std::string statusOf(const TaskEntity& task, Date now) {
  return StatusReport::of(task, {}, now).line();
}

/// Of a run that has ended: as the log has it.
State stateOf(const TaskEntity& task, const Run& run) {
  const auto entries = entriesOrNone(task, {.uniqueIds = {run.entryId}});
  const auto type =
      entries.empty() ? std::nullopt : entries.front()->value(TaskLogEntryEntity::entryType);
  return type && !isTimer(*type) ? State::finished : State::stopped;
}

TimedTaskHost::Started started(TimedTaskHost& host, const HostStore& store,
                               const TimerOptions& options) {
  std::shared_ptr<TaskEntity> task;
  try {
    return host.start([&] { return task = taskArgument(store, options.task); }, Date::now());
  } catch (const TimedTaskManager::Error& error) {
    const auto run = TimedTaskManager::shared().entry(task->uniqueId());
    if (error.reason() != TimedTaskManager::Error::Reason::alreadyTiming || !run) throw;
    throw HostError("a timer of " + inQuotes(task->title()) + " is running already; it ends at " +
                    TimerReport::of(*task, *run, State::running, 0).endText());
  }
}

void tellEnd(const HostStore& store, const TimedTaskHost::Started& started, bool json) {
  store.context().refreshAllObjects();  // another process may have ended it
  const auto& [task, run] = started;
  const State state = stateOf(*task, run);
  if (json) return print(TimerReport::of(*task, run, state, 0).json());
  print((state == State::finished ? "Time is up: " : "Stopped by another process: ") +
        terminalText(task->title()) + "; now " + statusOf(*task, Date::now()) + "\n");
}

void start(const TimerOptions& options) {
  if (options.isWaiting) onInterrupt([] { Environment::current().mainLoop().stop(); });
  const HostStore store;
  const auto host = std::make_shared<TimedTaskHost>(store, options.isWaiting);
  TimedTaskManager::shared().delegate = host;
  const auto begun = started(*host, store, options);
  const double duration = begun.run.end.timeIntervalSince(begun.run.start);
  const auto report = TimerReport::of(*begun.task, begun.run, State::running, duration);
  print(options.json ? report.json()
                     : "Started " + terminalText(report.title) + ": " + clockText(duration) +
                           ", ends at " + report.endText() + "\n");
  if (!options.isWaiting) return;
  std::fflush(stdout);
  if (waitForTimer(begun, !options.json)) return tellEnd(store, begun, options.json);
  Environment::current().report("the timer goes on, and ends at " + report.endText() +
                                "; \"velloro timer stop\" stops it");
}

/// The run of the task whose time was up when the command began, if there is one.
std::optional<Run> expiredRun(const std::vector<Run>& before, const TaskEntity& task, Date now) {
  const auto found = std::ranges::find_if(before, [&](const Run& run) {
    return run.end <= now && run.taskIdentifier == task.taskUniqueId();
  });
  return found != before.end() ? std::optional(*found) : std::nullopt;
}

void tellExpired(const TimerOptions& options, const TaskEntity& task, const Run& run, Date now) {
  const auto report = TimerReport::of(task, run, State::finished, 0);
  print(options.json ? report.json()
                     : "The time of " + terminalText(report.title) + " was up at " +
                           report.endText() + "; now " + statusOf(task, now) + "\n");
}

void stop(const TimerOptions& options) {
  const Date now = Date::now();
  const HostStore store;
  const auto before = TimedTaskManager::shared().entries();
  std::shared_ptr<TaskEntity> task;
  const auto stopped = TimedTaskHost(store).stop(
      [&] { return task = taskArgument(store, options.task); }, !options.isDiscarded, now);
  if (!stopped) {
    if (const auto run = expiredRun(before, *task, now)) {
      return tellExpired(options, *task, *run, now);
    }
    throw HostError("no timer of " + inQuotes(task->title()) + " is running");
  }
  const double left = stopped->run.end.timeIntervalSince(stopped->run.start) - stopped->ran;
  const auto report = TimerReport::of(*task, stopped->run, State::stopped, left);
  if (options.json) return print(report.json());
  print("Stopped " + terminalText(report.title) + " after " + clockText(std::floor(stopped->ran)) +
        (stopped->entry == nullptr ? ", logged nothing" : "") + "; now " + statusOf(*task, now) +
        "\n");
}

void list(const TimerOptions& options) {
  const Date now = Date::now();
  const HostStore store;
  const auto tasks =
      options.listed ? std::vector{taskArgument(store, *options.listed)} : store.tasks({});
  std::vector<TimerReport> reports;
  for (const Run& run : TimedTaskManager::shared().entries()) {
    const auto task = std::ranges::find_if(
        tasks, [&](const auto& each) { return each->taskUniqueId() == run.taskIdentifier; });
    if (task == tasks.end() || run.end <= now) continue;
    reports.push_back(TimerReport::of(**task, run, State::running, run.end.timeIntervalSince(now)));
  }
  std::ranges::stable_sort(reports, {}, &TimerReport::end);
  print(options.json ? JSONEncoder{.dateForm = DateForm::iso8601}.encode(reports) + "\n"
                     : table(reports));
}

void addStart(const Command& family) {
  const auto [command, options] = addTaskSubcommand(
      family, "start", "Starts a timer for what is left of the step under way", start);
  command.flag("--wait", options.isWaiting,
               "Shows the time running down until the timer ends; Ctrl-C leaves it running");
  command.footer(
      "At its end the step is logged, by the waiting command or by the next one that writes.\n\n"
      "Examples:\n"
      "  velloro task add Meditate --timer 600\n"
      "  velloro timer start Meditate\n"
      "  velloro timer start Meditate --wait");
}

void addStop(const Command& family) {
  const auto [command, options] =
      addTaskSubcommand(family, "stop", "Stops a timer and logs the time that it ran", stop);
  command.flag("--discard", options.isDiscarded, "Logs nothing");
  command.footer(
      "The time counts towards the step under way: the next timer runs for what is left.\n\n"
      "Examples:\n"
      "  velloro timer stop Meditate\n"
      "  velloro timer stop Meditate --discard");
}

void addList(const Command& family) {
  const auto [command, options] = family.subcommand("list", "Lists the running timers", list);
  command.json(options.json);
  command.option("task", options.listed, "TASK", "One task by title or id (default: all tasks)");
  command.footer(
      "Examples:\n"
      "  velloro timer list\n"
      "  velloro timer list Meditate --json");
}

}  // namespace

void addTimerCommand(const Command& app) {
  const Command family = app.subcommand("timer", "Starts, stops and lists timers of tasks");
  addStart(family);
  addStop(family);
  addList(family);
}

}  // namespace velloro
