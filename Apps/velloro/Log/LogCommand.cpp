#include "velloro/Log/LogCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Text/String.h"
#include "Host/HostStore.h"
#include "Host/LogWriter.h"
#include "Host/PeriodCloser.h"
#include "Tasks/Log/TaskOutlook.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "velloro/Log/LogReport.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/CaseArgument.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/TaskArgument.h"
#include "velloro/Output/Output.h"
#include "velloro/Tasks/StatusReport.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

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
  throw UsageError("TYPE", text,
                   "a habit to avoid can't be skipped, since it is clean until it happens; "
                   "write miss when it has happened");
}

YYYYMMDD logicalDay(const TaskEntity& task, Date instant) {
  return YYYYMMDD::fromDate(task.startOfDay(), instant, task.taskCurrentTimeZone());
}

NewLogEntry newEntry(const TaskEntity& task, const LogOptions& options, Date now) {
  NewLogEntry entry{.at = options.at ? instantArgument("--at", *options.at) : now};
  entry.date = options.date ? dayArgument("--date", *options.date) : logicalDay(task, entry.at);
  if (entry.at > now) throw UsageError("--at", *options.at, "in the future");
  if (entry.date > logicalDay(task, now)) {
    throw UsageError("--date", *options.date, "in the future");
  }
  // No task can have been made earlier.
  if (entry.at < Date::since1970(0)) {
    throw UsageError("--at", *options.at, "lies before 1970");
  }
  if (options.date && entry.date.y < 1970) {
    throw UsageError("--date", *options.date, "lies before 1970");
  }
  if (options.type) entry.type = typeArgument(*options.type, task);
  if (options.progress) {
    entry.amount = amountArgument("--progress", *options.progress);
    if (*entry.amount < 0) {
      throw UsageError("--progress", *options.progress, "below 0");
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
Outcome outcome(TaskEntity& task, const LogReport& report, Date now) {
  updateDerivedData(task, now);
  return {report, StatusReport::of(task, {}, now).line()};
}

void add(const LogOptions& options) {
  const HostStore store;
  const auto [entry, status] = store.write([&] {
    const Date now = Date::now();
    const auto task = taskArgument(store, options.task);
    const NewLogEntry wanted = newEntry(*task, options, now);
    PeriodCloser(store.context(), now).close(*task);
    return outcome(*task, LogReport::of(*addLogEntry(*task, wanted, now), *task), now);
  });
  if (options.json) return print(JSONEncoder{}.encode(entry) + "\n");
  print(entry.type + " on " + entry.date.debugDescription() + "; now " + status + "\n");
}

/// The entries that the command line asks for.
class Listing {
 public:
  Listing(const LogOptions& options, Date now) : now_(now) {
    if (options.from) dates_.minDate = dayArgument("--from", *options.from);
    if (options.to) dates_.maxDate = dayArgument("--to", *options.to);
    if (options.from && options.to && *dates_.minDate > *dates_.maxDate) {
      throw UsageError("--from", *options.from, "after --to");
    }
    if (options.since) setSince(*options.since);
    constexpr std::int64_t most = 999999999;
    if (options.limit) limit_ = countBetween("--limit", *options.limit, 1, most);
  }

  /// From the oldest.
  [[nodiscard]] std::vector<LogReport> of(const HostStore& store, TaskEntity& task) const {
    auto closings = PeriodCloser(store.context(), now_).foresee(task);
    std::erase_if(closings, [&](const auto& closing) { return !isAskedFor(closing); });
    auto reports = LogReport::ofLog(task, storedEntries(task), closings, now_);
    if (limit_ && std::ssize(reports) > *limit_) {
      reports.erase(reports.begin(), reports.end() - *limit_);
    }
    return reports;
  }

  /// From the newest.
  [[nodiscard]] std::vector<LogReport> ofAll(const HostStore& store) const {
    using enum TaskStatus;
    std::vector<LogReport> all;
    for (const auto& task : store.tasks({normal, paused, archived})) {
      std::ranges::move(of(store, *task), std::back_inserter(all));
    }
    std::ranges::stable_sort(all, std::greater(), [](const LogReport& entry) {
      return std::pair(entry.date, entry.created);
    });
    if (limit_ && std::ssize(all) > *limit_) all.resize(static_cast<std::size_t>(*limit_));
    return all;
  }

 private:
  void setSince(const std::string& text) {
    if (text.contains('T')) {
      madeSince_ = instantArgument("--since", text);
      return;
    }
    const YYYYMMDD day = dayArgument("--since", text);
    dates_.minDate = std::max(dates_.minDate.value_or(day), day);
  }

  [[nodiscard]] bool isAskedFor(const PeriodClosing& closing) const {
    return (!dates_.minDate || *dates_.minDate <= closing.date) &&
           (!dates_.maxDate || closing.date <= *dates_.maxDate) &&
           (!madeSince_ || *madeSince_ <= now_);
  }

  /// The newest, as many as may be listed.
  [[nodiscard]] TaskEntity::Entries storedEntries(const TaskEntity& task) const {
    TaskLogFetchRequest request{.direction = TaskLogFetchRequest::Direction::newestToOldest,
                                .minDate = dates_.minDate,
                                .maxDate = dates_.maxDate,
                                .madeSince = madeSince_};
    const auto* outlook = task.outlook();
    if (limit_) request.fetchLimit = *limit_ + (outlook ? std::ssize(outlook->withdrawn) : 0);
    auto entries = task.taskLog(request);
    if (!entries) {
      throw HostError("the log can't be read: " + entries.error()->localizedDescription());
    }
    std::ranges::reverse(*entries);
    return *std::move(entries);
  }

  Date now_;
  YYYYMMDD::Range dates_ = {};
  std::optional<Date> madeSince_ = {};
  std::optional<std::int64_t> limit_ = {};
};

void list(const LogOptions& options) {
  const Listing listing(options, Date::now());
  const HostStore store;
  const auto reports = options.listed ? listing.of(store, *taskArgument(store, *options.listed))
                                      : listing.ofAll(store);
  print(options.json ? JSONEncoder{}.encode(reports) + "\n"
                     : table(reports, /*hasTitles=*/!options.listed));
}

void undo(const LogOptions& options) {
  const HostStore store;
  const auto [entry, status] = store.write([&] {
    const Date now = Date::now();
    const auto task = taskArgument(store, options.task);
    const YYYYMMDD date =
        options.date ? dayArgument("--date", *options.date) : logicalDay(*task, now);
    PeriodCloser(store.context(), now).close(*task);
    const auto undone = undoLogEntry(*task, date, now);
    if (undone == nullptr) {
      throw HostError("nothing to undo: the period of " + date.debugDescription() +
                      " has no entry made by hand");
    }
    return outcome(*task, LogReport::of(*undone, *task), now);
  });
  if (options.json) return print(JSONEncoder{}.encode(entry) + "\n");
  print("Removed " + entry.type + " of " + entry.date.debugDescription() + "; now " + status +
        "\n");
}

void addDay(const Command& command, LogOptions& options) {
  command.option("--date", options.date, "YYYYMMDD", "The day of the entry (default: today)");
}

std::string typesFooter() {
  std::string types = "Types:\n  done, skip or miss, or one by its stored name:\n";
  for (const TaskLogEntryType type : allCases<TaskLogEntryType>()) {
    if (type != TaskLogEntryType::unknown) types += "  " + std::string(description(type)) + "\n";
  }
  return types;
}

void addAdd(const Command& family) {
  const auto [command, options] = addTaskSubcommand(family, "add", "Writes an entry", add);
  command.option("type", options.type, "TYPE",
                 "What happened: done, skip, miss or a stored name (default: the next step "
                 "towards completion; for a habit to avoid, a step towards a miss)");
  addDay(command, options);
  command.option("--at", options.at, "INSTANT", "The instant of the entry (default: now)");
  command.option("--progress", options.progress, "AMOUNT",
                 "The amount in the task's unit (default: a step, or what is left)");
  command.footer(typesFooter() +
                 "\nExamples:\n"
                 "  velloro log add Read\n"
                 "  velloro log add \"Drink water\" --progress 2\n"
                 "  velloro log add Read skip --date 20240307");
}

void addList(const Command& family) {
  const auto [command, options] = family.subcommand("list", "Lists entries", list);
  command.json(options.json);
  command.option("task", options.listed, "TASK",
                 "One task by title or id, from its oldest entry (default: all tasks that are "
                 "not deleted, from the newest entry)");
  command.option("--from", options.from, "YYYYMMDD", "First day");
  command.option("--to", options.to, "YYYYMMDD", "Last day");
  command.option("--since", options.since, "YYYYMMDD|INSTANT",
                 "Only entries of that day or later, or made at that instant or later");
  command.option("--limit", options.limit, "N", "Only the newest N entries");
  command.footer(
      "Examples:\n"
      "  velloro log list Read\n"
      "  velloro log list --since 20240301 --limit 20");
}

}  // namespace

void addLogCommand(const Command& app) {
  const Command family = app.subcommand("log", "Writes, lists and removes entries of the log");
  addAdd(family);
  addList(family);
  const auto [undoing, options] =
      addTaskSubcommand(family, "undo", "Removes the newest entry made by hand", undo);
  addDay(undoing, options);
}

}  // namespace velloro
