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
#include "velloro/Options/Subcommand.h"
#include "velloro/Options/TaskArgument.h"
#include "velloro/Output/Output.h"
#include "velloro/Tasks/StatusReport.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

namespace velloro {
namespace {

struct LogOptions {
  std::string task;
  std::optional<std::string> type, date, at, progress, listed, from, to, since, limit;
  bool json = false;
};

struct Word {
  std::string_view word;
  TaskLogEntryType type;
};

constexpr Word words[] = {{"done", TaskLogEntryType::completedManuallyFull},
                          {"skip", TaskLogEntryType::skippedManuallyFull},
                          {"miss", TaskLogEntryType::missedManuallyFull}};

/// A word, or a type's stored name.
TaskLogEntryType typeNamed(const std::string& text) {
  std::vector<std::string_view> names;
  for (const auto& [word, type] : words) {
    if (word == text) return type;
    names.push_back(word);
  }
  for (const TaskLogEntryType type : allCases<TaskLogEntryType>()) {
    if (description(type) == text && type != TaskLogEntryType::unknown) return type;
    if (type != TaskLogEntryType::unknown) names.push_back(description(type));
  }
  throw unknownName("TYPE", text, "type of entry", names);
}

TaskLogEntryType typeArgument(const std::string& text, const TaskEntity& task) {
  const TaskLogEntryType type = typeNamed(text);
  if (!task.isNegative() || !isSkipped(type)) return type;
  throw UsageError("TYPE " + inQuotes(text) +
                   ": a habit to avoid can't be skipped, since it is clean until it happens; "
                   "write miss when it has happened");
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
  if (options.type) entry.type = typeArgument(*options.type, task);
  if (options.progress) {
    entry.amount = amountArgument("--progress", *options.progress);
    if (*entry.amount < 0) {
      throw UsageError("--progress " + inQuotes(*options.progress) + ": below 0");
    }
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
    return outcome(*task, LogReport::of(*addLogEntry(*task, wanted), *task));
  });
  if (options.json) return print(JSONEncoder{}.encode(entry) + "\n");
  print(entry.type + " on " + entry.date.debugDescription() + "; now " + status + "\n");
}

/// The entries of one task that the command line asks for.
struct Listing {
  YYYYMMDD::Range dates = {};
  std::optional<Date> made = {};  ///< At this instant or later.
  std::optional<std::size_t> limit = {};

  explicit Listing(const LogOptions& options) {
    if (options.from) dates.minDate = dayArgument("--from", *options.from);
    if (options.to) dates.maxDate = dayArgument("--to", *options.to);
    if (options.since) setSince(*options.since);
    if (options.from && options.to && *dates.minDate > *dates.maxDate) {
      throw UsageError("--from " + inQuotes(*options.from) + ": after --to");
    }
    constexpr std::int64_t most = 999999999;
    if (options.limit) limit = countBetween("--limit", *options.limit, 1, most);
  }

  [[nodiscard]] std::vector<LogReport> of(const HostStore& store, TaskEntity& task) const {
    const auto closings = PeriodCloser(store.context()).foresee(task);
    const auto entries = task.taskLog({.direction = TaskLogFetchRequest::Direction::oldestToNewest,
                                       .minDate = dates.minDate,
                                       .maxDate = dates.maxDate});
    if (!entries) {
      throw HostError("the log can't be read: " + entries.error()->localizedDescription());
    }
    auto reports = LogReport::ofLog(task, *entries, closings, dates);
    std::erase_if(reports, [&](const auto& entry) { return made && entry.created < made; });
    if (limit && reports.size() > *limit) {
      reports.erase(reports.begin(), reports.end() - static_cast<std::ptrdiff_t>(*limit));
    }
    return reports;
  }

 private:
  void setSince(const std::string& text) {
    if (text.contains('T')) {
      made = instantArgument("--since", text);
      return;
    }
    // As listings print it, too: 2024-03-07.
    std::string digits = text;
    if (text.size() == 10 && text[4] == '-' && text[7] == '-') std::erase(digits, '-');
    const YYYYMMDD day = dayArgument("--since", digits);
    dates.minDate = std::max(dates.minDate.value_or(day), day);
  }
};

std::vector<LogReport> newestOfAll(const HostStore& store, const Listing& listing) {
  using enum TaskStatus;
  std::vector<LogReport> all;
  for (const auto& task : store.tasks({normal, paused, archived})) {
    std::ranges::move(listing.of(store, *task), std::back_inserter(all));
  }
  std::ranges::stable_sort(all, std::greater(), [](const LogReport& entry) {
    return std::pair(entry.date, entry.created);
  });
  if (listing.limit && all.size() > *listing.limit) all.resize(*listing.limit);
  return all;
}

void list(const LogOptions& options) {
  const Listing listing(options);
  const HostStore store;
  const auto reports = options.listed ? listing.of(store, *taskArgument(store, *options.listed))
                                      : newestOfAll(store, listing);
  print(options.json ? JSONEncoder{}.encode(reports) + "\n"
                     : table(reports, /*hasTitles=*/!options.listed));
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
    return outcome(*task, LogReport::of(*undone, *task));
  });
  if (options.json) return print(JSONEncoder{}.encode(entry) + "\n");
  print("Removed " + entry.type + " of " + entry.date.debugDescription() + "; now " + status +
        "\n");
}

using Options = std::shared_ptr<LogOptions>;

void addDay(CLI::App& command, const Options& options) {
  command.add_option("--date", options->date, "The day of the entry (default: today)")
      ->type_name("YYYYMMDD");
}

std::string typesFooter() {
  std::string types = "Types:\n  done, skip or miss, or one by its stored name:\n";
  for (const TaskLogEntryType type : allCases<TaskLogEntryType>()) {
    if (type != TaskLogEntryType::unknown) types += "  " + std::string(description(type)) + "\n";
  }
  return types;
}

void addAdd(CLI::App& command, const Options& options) {
  CLI::App* added = addSubcommand(command, "add", "Writes an entry", options, add);
  addTaskArgument(*added, options->task);
  added
      ->add_option("type", options->type,
                   "What happened: done, skip, miss or a stored name (default: the next step "
                   "towards completion; for a habit to avoid, a step towards a miss)")
      ->type_name("TYPE");
  addDay(*added, options);
  added->add_option("--at", options->at, "The instant of the entry (default: now)")
      ->type_name("INSTANT");
  added
      ->add_option("--progress", options->progress,
                   "The amount in the task's unit (default: a step, or what is left)")
      ->type_name("AMOUNT");
  added->footer(typesFooter() +
                "\nExamples:\n"
                "  velloro log add Read\n"
                "  velloro log add \"Drink water\" --progress 2\n"
                "  velloro log add Read skip --date 20240307");
}

void addList(CLI::App& command, const Options& options) {
  CLI::App* listed = addSubcommand(command, "list", "Lists entries", options, list);
  listed
      ->add_option("task", options->listed,
                   "One task by title or id, from its oldest entry (default: all tasks that are "
                   "not deleted, from the newest entry)")
      ->type_name("TASK");
  listed->add_option("--from", options->from, "First day")->type_name("YYYYMMDD");
  listed->add_option("--to", options->to, "Last day")->type_name("YYYYMMDD");
  listed
      ->add_option("--since", options->since,
                   "Only entries of that day or later, or made at that instant or later")
      ->type_name("YYYYMMDD|INSTANT");
  listed->add_option("--limit", options->limit, "Only the newest N entries")->type_name("N");
  listed->footer(
      "Examples:\n"
      "  velloro log list Read\n"
      "  velloro log list --since 20240301 --limit 20");
}

}  // namespace

void addLogCommand(CLI::App& app) {
  auto options = std::make_shared<LogOptions>();
  CLI::App* command = app.add_subcommand("log", "Writes, lists and removes entries of the log");
  command->require_subcommand(1);
  command->fallthrough();

  addAdd(*command, options);
  addList(*command, options);
  CLI::App* undone =
      addSubcommand(*command, "undo", "Removes the newest entry made by hand", options, undo);
  addTaskArgument(*undone, options->task);
  addDay(*undone, options);
}

}  // namespace velloro
