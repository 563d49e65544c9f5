#include "velloro/Log/HistoryCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Text/String.h"
#include "Host/HostStore.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "velloro/Log/HistoryReport.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/TaskArgument.h"
#include "velloro/Output/Output.h"

#include <memory>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

namespace velloro {
namespace {

struct HistoryOptions {
  std::string task;
  std::optional<std::string> from, to;
  bool json = false;
};

void run(const HistoryOptions& options) {
  const HostStore store;
  const Date now = Date::now();
  const auto task = currentTaskArgument(store, options.task, now);
  const YYYYMMDD to = options.to ? dayArgument("--to", *options.to) : logRules(*task, now).today();
  const YYYYMMDD from =
      options.from ? dayArgument("--from", *options.from) : to.yyyymm().previousMonth().firstDay();
  if (from > to) throw UsageError("--from", from.debugDescription(), "after --to");
  const auto report = HistoryReport::of(*task, from, to, now);
  print(options.json ? JSONEncoder{}.encode(report) + "\n" : report.text());
}

}  // namespace

void addHistoryCommand(CLI::App& app) {
  auto options = std::make_shared<HistoryOptions>();
  CLI::App* command =
      app.add_subcommand("history", "Shows the past periods of a task, and how each ended");
  addTaskArgument(*command, options->task);
  command
      ->add_option("--from", options->from,
                   "First day (default: the first of the month before the last day's)")
      ->type_name("YYYYMMDD");
  command->add_option("--to", options->to, "Last day (default: today)")->type_name("YYYYMMDD");
  command->add_flag("--json", options->json, "Prints one JSON object")->disable_flag_override();
  command->footer(
      "● done  ✗ missed  – skipped  ◌ allowed  ○ open  · before the task was made\n\n"
      "Examples:\n"
      "  velloro history Read\n"
      "  velloro history Read --from 20240101 --to 20240331 --json");
  command->callback([options] { run(*options); });
}

}  // namespace velloro
