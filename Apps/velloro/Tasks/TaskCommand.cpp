#include "velloro/Tasks/TaskCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Text/String.h"
#include "Host/LogWriter.h"
#include "Host/PeriodCloser.h"
#include "Host/TimedTaskHost.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskWriting.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Subcommand.h"
#include "velloro/Options/TaskArgument.h"
#include "velloro/Output/Output.h"
#include "velloro/Tasks/TaskFieldOptions.h"
#include "velloro/Tasks/TaskReport.h"

#include <memory>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

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

using Options = std::shared_ptr<TaskOptions>;

void addStatusCommands(CLI::App& command, const Options& options) {
  struct Row {
    const char* name;
    const char* help;
    void (*work)(const TaskOptions&);
  };
  using enum TaskStatus;
  constexpr Row rows[] = {
      {"pause", "Pauses a task: until it is resumed, its periods count as skipped",
       [](const TaskOptions& o) { setStatus(o, paused, "Paused"); }},
      {"resume", "Resumes a paused, archived or deleted task",
       [](const TaskOptions& o) { setStatus(o, normal, "Resumed"); }},
      {"archive", "Archives a task, with its log",
       [](const TaskOptions& o) { setStatus(o, archived, "Archived"); }},
      {"delete", "Moves a task to the trash, from which \"resume\" restores it",
       [](const TaskOptions& o) { setStatus(o, trashed, "Deleted"); }}};
  for (const Row& row : rows) {
    addTaskArgument(*addSubcommand(command, row.name, row.help, options, row.work), options->task);
  }
}

}  // namespace

void addTaskCommand(CLI::App& app) {
  auto options = std::make_shared<TaskOptions>();
  CLI::App* command = app.add_subcommand("task", "Adds, lists and changes tasks");
  command->require_subcommand(1);
  command->fallthrough();

  CLI::App* added = addSubcommand(*command, "add", "Adds a task", options, add);
  added->add_option("title", options->fields.title, "What the task is called")
      ->type_name("TITLE")
      ->required();
  options->fields.addTo(*added);
  added->add_option("--created", options->created, "When the task was made (default: now)")
      ->type_name("INSTANT");
  added->footer(modesFooter() +
                "\nExamples:\n"
                "  velloro task add Read --every mon,wed,fri --icon book\n"
                "  velloro task add \"Water the plants\" --every 3d\n"
                "  velloro task add Run --times 3 --per week\n"
                "  velloro task add Swim --total 20 --per month\n"
                "  velloro task add \"Drink water\" --type hk_water --target 8 --unit cups_us "
                "--partial 8\n"
                "  velloro task add \"No sweets\" --negative");

  CLI::App* listed = addSubcommand(*command, "list", "Lists the tasks", options, list);
  listed->add_flag("--all", options->isWhole, "Also list archived and deleted tasks")
      ->disable_flag_override();
  addTaskArgument(*addSubcommand(*command, "show", "Shows a task", options, show), options->task);

  CLI::App* edited = addSubcommand(*command, "edit", "Changes a task", options, edit);
  addTaskArgument(*edited, options->task);
  edited->add_option("--title", options->fields.title, "The new title")->type_name("TITLE");
  options->fields.addTo(*edited);
  edited->add_flag("--positive", options->fields.isPositive, "A habit to keep")
      ->disable_flag_override()
      ->excludes("--negative");
  addStatusCommands(*command, options);
}

}  // namespace velloro
