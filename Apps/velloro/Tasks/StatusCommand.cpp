#include "velloro/Tasks/StatusCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Host/HostStore.h"
#include "Host/PeriodCloser.h"
#include "Tasks/Rows/TaskEntity.h"
#include "velloro/Options/Arguments.h"
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

void addStatusCommand(CLI::App& app) {
  auto options = std::make_shared<StatusOptions>();
  CLI::App* command =
      app.add_subcommand("status", "Lists the tasks with their state and their streaks");
  command
      ->add_option("task", options->task,
                   "One task, by title or id (default: all that are neither archived nor deleted)")
      ->type_name("TASK");
  command->add_option("--date", options->date, "A day of the period to show (default: today)")
      ->type_name("YYYYMMDD");
  command
      ->add_flag("--json", options->json,
                 "Prints an array of JSON objects, or one object for one TASK")
      ->disable_flag_override();
  command->footer(
      "○ open  ◔ ◑ ◕ begun  ● done  ✗ missed  – skipped  ◌ allowed\n\n"
      "Examples:\n"
      "  velloro status\n"
      "  velloro status Read --date 20240307 --json");
  command->callback([options] { run(*options); });
}

}  // namespace velloro
