#include "velloro/Tasks/TypesCommand.h"

#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Output/Output.h"
#include "velloro/Tasks/TypeReport.h"

#include <optional>
#include <string>
#include <vector>

namespace velloro {
namespace {

struct TypesOptions {
  std::optional<std::string> type;
  std::string period = "day";
  bool json = false;
};

std::string answer(const TypesOptions& options) {
  const auto period = periodArgument("--period", options.period);
  if (options.type) {
    const auto report = TypeReport::of(taskTypeArgument("TYPE", *options.type), period);
    return options.json ? report.json() : report.text();
  }
  std::vector<TypeReport> reports;
  for (const TaskType type : TaskType::all()) reports.push_back(TypeReport::of(type, period));
  return options.json ? json(reports) : table(reports);
}

void run(const TypesOptions& options) {
  print(answer(options));
}

}  // namespace

void addTypesCommand(const Command& app) {
  const auto [command, options] =
      app.subcommand("types", "Lists the automatic task types and what they offer", run);
  command.option("type", options.type, "TYPE", "One type's stored name (default: a table of all)");
  command.option("--period", options.period, "PERIOD",
                 "Targets for a day, week, fortnight, month or year (default: day)");
  command.json(options.json);
  command.footer(
      "Examples:\n"
      "  velloro types\n"
      "  velloro types hk_water --period week\n"
      "  velloro types timer --json");
}

}  // namespace velloro
