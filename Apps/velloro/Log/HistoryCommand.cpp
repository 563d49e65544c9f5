#include "velloro/Log/HistoryCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Text/String.h"
#include "Host/HostStore.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "velloro/Log/HistoryReport.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/TaskArgument.h"
#include "velloro/Output/Output.h"

#include <optional>
#include <string>

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

void addHistoryCommand(const Command& app) {
  const auto [command, options] =
      app.subcommand("history", "Shows the past periods of a task, and how each ended", run);
  addTaskArgument(command, options.task);
  command.option("--from", options.from, "YYYYMMDD",
                 "First day (default: the first of the month before the last day's)");
  command.option("--to", options.to, "YYYYMMDD", "Last day (default: today)");
  command.json(options.json, "Prints one JSON object");
  command.footer(
      "● done  ✗ missed  – skipped  ◌ allowed  ○ open  · before the task was made\n\n"
      "Examples:\n"
      "  velloro history Read\n"
      "  velloro history Read --from 20240101 --to 20240331 --json");
}

}  // namespace velloro
