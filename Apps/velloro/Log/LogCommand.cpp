#include "velloro/Log/LogCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Text/String.h"
#include "Host/HostStore.h"
#include "Host/LogWriter.h"
#include "Host/PeriodCloser.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "velloro/Log/LogReport.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/CaseArgument.h"
#include "velloro/Options/TaskArgument.h"
#include "velloro/Output/Output.h"
#include "velloro/Tasks/StatusReport.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace velloro {
namespace {

struct LogOptions {
  std::string task;
  std::optional<std::string> type, date, at, progress, from, to;
  bool json = false;
};

TaskLogEntryType typeArgument(const std::string& text) {
  std::vector<std::string_view> names;
  for (const TaskLogEntryType type : allCases<TaskLogEntryType>()) {
    if (description(type) == text && type != TaskLogEntryType::unknown) return type;
    if (type != TaskLogEntryType::unknown) names.push_back(description(type));
  }
  throw unknownName("TYPE", text, "type of entry", names);
}

YYYYMMDD logicalDay(const TaskEntity& task, Date instant) {
  return YYYYMMDD::fromDate(task.startOfDay(), instant, task.taskCurrentTimeZone());
}

NewLogEntry newEntry(const TaskEntity& task, const LogOptions& options) {
  NewLogEntry entry{.at = options.at ? instantArgument("--at", *options.at) : Date::now()};
  entry.date = options.date ? dayArgument("--date", *options.date) : logicalDay(task, entry.at);
  if (entry.at > Date::now()) throw UsageError("--at " + inQuotes(*options.at) + ": in the future");
  if (entry.date > logicalDay(task, Date::now())) {
    throw UsageError("--date " + inQuotes(*options.date) + ": in the future");
  }
  // No task can have been made earlier.
  if (entry.at < Date::since1970(0)) {
    throw UsageError("--at " + inQuotes(*options.at) + ": lies before 1970");
  }
  if (options.date && entry.date.y < 1970) {
    throw UsageError("--date " + inQuotes(*options.date) + ": lies before 1970");
  }
  if (options.type) entry.type = typeArgument(*options.type);
  if (options.progress) {
    entry.amount = amountArgument("--progress", *options.progress);
    if (*entry.amount < 0)
      throw UsageError("--progress " + inQuotes(*options.progress) + ": below 0");
  }
  return entry;
}

/// What became of an entry, and where its task stands with that.
struct Outcome {
  LogReport entry;
  std::string status;
};

/// Within the transaction: by the time of the printing others may have written more.
Outcome outcome(TaskEntity& task, const LogReport& report) {
  updateDerivedData(task);
  return {report, StatusReport::of(task, {}).line()};
}

void add(const LogOptions& options) {
  const HostStore store;
  const auto [entry, status] = store.write([&] {
    const auto task = taskArgument(store, options.task);
    const NewLogEntry wanted = newEntry(*task, options);
    PeriodCloser(store.context()).close(*task);
    return outcome(*task, LogReport::of(*addLogEntry(*task, wanted)));
  });
  if (options.json) return print(JSONEncoder{}.encode(entry) + "\n");
  print(entry.type + " on " + entry.date.debugDescription() + "; now " + status + "\n");
}

void list(const LogOptions& options) {
  TaskLogFetchRequest request{.direction = TaskLogFetchRequest::Direction::oldestToNewest};
  if (options.from) request.minDate = dayArgument("--from", *options.from);
  if (options.to) request.maxDate = dayArgument("--to", *options.to);
  if (options.from && options.to && *request.minDate > *request.maxDate) {
    throw UsageError("--from \"" + *options.from + "\": after --to");
  }
  const HostStore store;
  const auto task = taskArgument(store, options.task);
  const auto closings = PeriodCloser(store.context()).foresee(*task);
  const auto entries = task->taskLog(request);
  if (!entries)
    throw HostError("the log can't be read: " + entries.error()->localizedDescription());
  const auto reports = LogReport::ofLog(*task, *entries, closings,
                                        {.minDate = request.minDate, .maxDate = request.maxDate});
  print(options.json ? JSONEncoder{}.encode(reports) + "\n"
                     : table(reports, AmountText(task->automaticTaskType())));
}

void undo(const LogOptions& options) {
  const HostStore store;
  const auto [entry, status] = store.write([&] {
    const auto task = taskArgument(store, options.task);
    const YYYYMMDD date =
        options.date ? dayArgument("--date", *options.date) : logicalDay(*task, Date::now());
    PeriodCloser(store.context()).close(*task);
    const auto undone = undoLogEntry(*task, date);
    if (undone == nullptr) {
      throw HostError("nothing to undo: the period of " + date.debugDescription() +
                      " has no entry made by hand");
    }
    return outcome(*task, LogReport::of(*undone));
  });
  if (options.json) return print(JSONEncoder{}.encode(entry) + "\n");
  print("Took back " + entry.type + " of " + entry.date.debugDescription() + "; now " + status +
        "\n");
}

using Options = std::shared_ptr<LogOptions>;

CLI::App* addSubcommand(CLI::App& command, const char* name, const char* help,
                        const Options& options, void (*work)(const LogOptions&)) {
  CLI::App* added = command.add_subcommand(name, help);
  addTaskArgument(*added, options->task);
  added->add_flag("--json", options->json, "Prints JSON")->disable_flag_override();
  added->callback([options, work] { work(*options); });
  return added;
}

}  // namespace

void addLogCommand(CLI::App& app) {
  auto options = std::make_shared<LogOptions>();
  CLI::App* command = app.add_subcommand("log", "Writes, lists and takes back what happened");
  command->require_subcommand(1);
  command->fallthrough();

  CLI::App* added = addSubcommand(*command, "add", "Writes an entry", options, add);
  added
      ->add_option("type", options->type,
                   "What happened, such as skipped_manually (default: the next step towards "
                   "completion; for a habit to avoid, a step towards a miss)")
      ->type_name("TYPE");
  const auto addDay = [&](CLI::App& to) {
    to.add_option("--date", options->date, "On which day (default: today)")->type_name("YYYYMMDD");
  };
  addDay(*added);
  added->add_option("--at", options->at, "At which instant (default: now)")->type_name("INSTANT");
  added
      ->add_option("--progress", options->progress,
                   "How much, in the task's unit (default: a step, or what is left)")
      ->type_name("AMOUNT");
  std::string types = "Types:\n";
  for (const TaskLogEntryType type : allCases<TaskLogEntryType>()) {
    if (type != TaskLogEntryType::unknown) types += "  " + std::string(description(type)) + "\n";
  }
  added->footer(types +
                "\nExamples:\n"
                "  velloro log add Read\n"
                "  velloro log add \"Drink water\" --progress 2\n"
                "  velloro log add Read skipped_manually --date 20240307");

  CLI::App* listed = addSubcommand(*command, "list", "Lists entries", options, list);
  listed->add_option("--from", options->from, "First day")->type_name("YYYYMMDD");
  listed->add_option("--to", options->to, "Last day")->type_name("YYYYMMDD");
  addDay(*addSubcommand(*command, "undo", "Takes the newest entry back that was made by hand",
                        options, undo));
}

}  // namespace velloro
