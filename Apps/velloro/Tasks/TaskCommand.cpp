#include "velloro/Tasks/TaskCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Text/String.h"
#include "Host/LogWriter.h"
#include "Host/PeriodCloser.h"
#include "Host/TimedTaskHost.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskWriting.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/TaskArgument.h"
#include "velloro/Output/Output.h"
#include "velloro/Tasks/TaskFieldOptions.h"
#include "velloro/Tasks/TaskReport.h"

#include <optional>
#include <string>

namespace velloro {
namespace {

struct TaskOptions {
  std::string task;
  TaskFieldOptions fields;
  std::optional<std::string> created;
  bool isWhole = false;
  bool json = false;
};

void printTask(const TaskEntity& task, const TaskOptions& options, const char* what) {
  const auto report = TaskReport::of(task);
  if (options.json) return print(JSONEncoder{}.encode(report) + "\n");
  print(std::string(what) + " \"" + terminalText(report.title) + "\" (" + report.shortId() +
        "): " + report.due() + "\n");
}

void add(const TaskOptions& options) {
  const Date now = Date::now();
  const Date created = options.created ? instantArgument("--created", *options.created) : now;
  if (created > now) {
    throw UsageError("--created", *options.created, "lies in the future");
  }
  if (created < Date::since1970(0)) {
    throw UsageError("--created", *options.created, "lies before 1970");
  }
  const HostStore store;
  const auto task = store.write([&] {
    auto added = addTask(store, options.fields.fields(), created);
    bringUpToDate(*added, now);
    return added;
  });
  printTask(*task, options, "Added");
}

void list(const TaskOptions& options) {
  using enum TaskStatus;
  const HostStore store;
  std::vector<TaskReport> reports;
  const auto tasks =
      store.tasks(options.isWhole ? EnumSet<TaskStatus>{} : EnumSet<TaskStatus>{normal, paused});
  for (const auto& task : tasks) reports.push_back(TaskReport::of(*task));
  print(options.json ? JSONEncoder{}.encode(reports) + "\n" : table(reports));
}

void show(const TaskOptions& options) {
  const HostStore store;
  const auto report = TaskReport::of(*taskArgument(store, options.task));
  print(options.json ? JSONEncoder{}.encode(report) + "\n" : report.text());
}

void edit(const TaskOptions& options) {
  const HostStore store;
  const auto task = store.write([&] {
    const Date now = Date::now();
    auto edited = taskArgument(store, options.task);
    PeriodCloser(store.context(), now).close(*edited);
    changeTask(store, *edited, options.fields.fields(edited.get()));
    updateDerivedData(*edited, now);
    return edited;
  });
  printTask(*task, options, "Changed");
}

void setStatus(const TaskOptions& options, TaskStatus status, const char* what) {
  const HostStore store;
  const Date now = Date::now();
  const auto named = [&] { return taskArgument(store, options.task); };
  // No timer runs on for a task that rests.
  const bool isAnyRunning = !TimedTaskManager::shared().entries().empty();
  if (isAnyRunning && status != TaskStatus::normal) TimedTaskHost(store).stop(named, true, now);
  const auto task = store.write([&] {
    auto changed = named();
    bringUpToDate(*changed, now);
    setTaskStatus(*changed, status, now);
    return changed;
  });
  printTask(*task, options, what);
}

void addAdd(const Command& family) {
  const auto [command, options] = family.subcommand("add", "Adds a task", add);
  command.json(options.json);
  command.option("title", options.fields.title, "TITLE", "What the task is called").required();
  options.fields.addTo(command);
  command.option("--created", options.created, "INSTANT", "When the task was made (default: now)");
  command.footer(modesFooter() +
                 "\nExamples:\n"
                 "  velloro task add Read --every mon,wed,fri --icon book\n"
                 "  velloro task add \"Water the plants\" --every 3d\n"
                 "  velloro task add Run --times 3 --per week\n"
                 "  velloro task add Swim --total 20 --per month\n"
                 "  velloro task add \"Drink water\" --type hk_water --target 8 --unit cups_us "
                 "--partial 8\n"
                 "  velloro task add \"No sweets\" --negative");
}

void addList(const Command& family) {
  const auto [command, options] = family.subcommand("list", "Lists the tasks", list);
  command.json(options.json);
  command.flag("--all", options.isWhole, "Also list archived and deleted tasks");
}

void addEdit(const Command& family) {
  const auto [command, options] = addTaskSubcommand(family, "edit", "Changes a task", edit);
  command.option("--title", options.fields.title, "TITLE", "The new title");
  options.fields.addTo(command);
  command.flag("--positive", options.fields.isPositive, "A habit to keep").excludes({"--negative"});
}

void addStatusCommands(const Command& family) {
  using enum TaskStatus;
  const auto add = [&](const char* name, const char* help, void (*work)(const TaskOptions&)) {
    addTaskSubcommand(family, name, help, work);
  };
  add("pause", "Pauses a task: until it is resumed, its periods count as skipped",
      [](const TaskOptions& of) { setStatus(of, paused, "Paused"); });
  add("resume", "Resumes a paused, archived or deleted task",
      [](const TaskOptions& of) { setStatus(of, normal, "Resumed"); });
  add("archive", "Archives a task, with its log",
      [](const TaskOptions& of) { setStatus(of, archived, "Archived"); });
  add("delete", "Moves a task to the trash, from which \"resume\" restores it",
      [](const TaskOptions& of) { setStatus(of, trashed, "Deleted"); });
}

}  // namespace

void addTaskCommand(const Command& app) {
  const Command family = app.subcommand("task", "Adds, lists and changes tasks");
  addAdd(family);
  addList(family);
  addTaskSubcommand(family, "show", "Shows a task", show);
  addEdit(family);
  addStatusCommands(family);
}

}  // namespace velloro
