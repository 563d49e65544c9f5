#include "velloro/Tasks/TypesCommand.h"

#include "velloro/Options/Arguments.h"
#include "velloro/Output/Output.h"
#include "velloro/Tasks/TypeReport.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

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
  const std::string text = answer(options);
  print(text);
}

}  // namespace

void addTypesCommand(CLI::App& app) {
  auto options = std::make_shared<TypesOptions>();
  CLI::App* command =
      app.add_subcommand("types", "Lists the automatic task types and what they offer");
  command->add_option("type", options->type, "One type's stored name (default: a table of all)")
      ->type_name("TYPE");
  command
      ->add_option("--period", options->period,
                   "Targets for a day, week, fortnight, month or year (default: day)")
      ->type_name("PERIOD");
  command->add_flag("--json", options->json, "Prints JSON");
  command->footer(
      "Examples:\n"
      "  velloro types\n"
      "  velloro types hk_water --period week\n"
      "  velloro types timer --json");
  command->callback([options] { run(*options); });
}

}  // namespace velloro
