#include "velloro/Tasks/StatusCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Host/HostStore.h"
#include "Host/PeriodCloser.h"
#include "Tasks/Rows/TaskEntity.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/TaskArgument.h"
#include "velloro/Output/Output.h"
#include "velloro/Tasks/StatusReport.h"

#include <optional>
#include <string>
#include <vector>

namespace velloro {
namespace {

struct StatusOptions {
  std::optional<std::string> task, date;
  bool json = false;
};

void run(const StatusOptions& options) {
  const auto date =
      options.date ? std::optional(dayArgument("--date", *options.date)) : std::nullopt;
  const HostStore store;
  const Date now = Date::now();
  PeriodCloser closer(store.context(), now);
  const auto reportOf = [&](const std::shared_ptr<TaskEntity>& task) {
    closer.foresee(*task);
    return StatusReport::of(*task, date, now);
  };
  const auto asked = options.task ? taskArgument(store, *options.task) : nullptr;
  std::vector<StatusReport> all, reports;
  for (const auto& task : store.tasks(activeStatuses)) all.push_back(reportOf(task));
  if (asked) {
    reports.push_back(reportOf(asked));
  } else {
    reports = all;
  }
  for (StatusReport& report : reports) report.grandSlam = isGrandSlam(all);
  if (!options.json) return print(table(reports));
  const JSONEncoder encoder{};
  print((options.task ? encoder.encode(reports.front()) : encoder.encode(reports)) + "\n");
}

}  // namespace

void addStatusCommand(const Command& app) {
  const auto [command, options] =
      app.subcommand("status", "Lists the tasks with their state and their streaks", run);
  command.option("task", options.task, "TASK",
                 "One task, by title or id (default: all that are neither archived nor deleted)");
  command.option("--date", options.date, "YYYYMMDD",
                 "A day of the period to show (default: today)");
  command.json(options.json, "Prints an array of JSON objects, or one object for one TASK");
  command.footer(
      "○ open  ◔ ◑ ◕ begun  ● done  ✗ missed  – skipped  ◌ allowed\n\n"
      "Examples:\n"
      "  velloro status\n"
      "  velloro status Read --date 20240307 --json");
}

}  // namespace velloro
