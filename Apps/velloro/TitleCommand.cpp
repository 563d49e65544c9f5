#include "velloro/TitleCommand.h"

#include "OxKit/Numbers.h"
#include "VelloroCore/TaskTitleSource.h"
#include "velloro/Arguments.h"
#include "velloro/TitleReport.h"

#include <cmath>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

namespace velloro {
namespace {

struct TitleOptions {
  std::optional<std::string> type;
  std::optional<std::string> target;
  std::optional<std::string> unit;
  std::optional<std::string> title;
  std::optional<std::string> partial;
  std::optional<std::string> progress;
  std::optional<std::string> context;
  bool isNegative = false;
  bool json = false;
};

double chosenQuantity(const TitleOptions& options, TaskType type, TypeUnit unit) {
  if (!options.target) {
    const auto range = type.quantityOptions(unit);
    return range ? range->defaultValue().value_or(1) : 1;
  }
  if (unit == TypeUnit::timeOfDay) {
    return static_cast<double>(timeArgument("--target", *options.target).intValue());
  }
  const double amount = amountArgument("--target", *options.target);
  if (amount >= 0 || type == HealthType::energyDeficit) return amount;
  throw UsageError("--target \"" + *options.target + "\": below 0");
}

AutomaticTaskType chosenType(const TitleOptions& options) {
  const TaskType type = taskTypeArgument("--type", *options.type);
  auto unit = type.defaultUnit();
  if (options.unit) unit = unitArgument("--unit", *options.unit, type);
  if (unit) {
    return AutomaticTaskType(type, TaskTarget{.quantity = chosenQuantity(options, type, *unit),
                                              .unit = *unit,
                                              .speeds = type.defaultSpeeds()});
  }
  if (options.target) {
    throw UsageError("--target \"" + *options.target + "\": " + std::string(type.rawValue()) +
                     (unitNames(type).empty() ? " has no amount" : " needs a --unit"));
  }
  return AutomaticTaskType(type);
}

/// The state in which such a share of the target is done.
TaskProgress chosenProgress(const TitleOptions& options, const AutomaticTaskType& type) {
  const auto parts = options.partial ? countArgument("--partial", *options.partial) : 1;
  if (parts < 1) throw UsageError("--partial \"" + *options.partial + "\": not from 1 on");
  const double share = options.progress ? shareArgument("--progress", *options.progress) : 0;
  const double done = wholeUnlessFractional(type.quantity * share);
  if (!type.isTimed() || !type.unit || !isDuration(*type.unit)) {
    return TaskProgressContinuous{.period = {},
                                  .expectedCompletions = parts,
                                  .targetValue = type.quantity,
                                  .currentValue = done};
  }
  TaskProgressTimer timer{.period = {},
                          .unit = TaskProgressTimer::Unit::seconds,
                          .expectedCompletions = parts,
                          .totalTargetDuration = convertToTimeInterval(type.quantity, *type.unit)};
  const double elapsed = convertToTimeInterval(done, *type.unit);
  const double each = timer.durationPerCompletion();
  if (!(each > 0)) return timer;
  const double completions = std::floor(wholeUnlessFractional(elapsed / each));
  timer.numCompletions = static_cast<std::int64_t>(completions);
  timer.currentCompletionDuration = difference(elapsed, completions * each);
  return timer;
}

TaskTitleSource chosenTask(const TitleOptions& options) {
  TaskTitleSource task{.title = options.title.value_or(""), .isNegative = options.isNegative};
  if (options.type) {
    task.automaticTaskType = chosenType(options);
    task.isTimed = task.automaticTaskType->isTimed();
    task.progress = chosenProgress(options, *task.automaticTaskType);
    return task;
  }
  if (!options.title) throw UsageError("a --type or a --title is needed");
  for (const auto& [name, value] : {std::pair("--target", options.target),
                                    {"--unit", options.unit},
                                    {"--partial", options.partial},
                                    {"--progress", options.progress}}) {
    if (value) throw UsageError(name + (" \"" + *value) + "\": only with a --type");
  }
  return task;
}

void run(const TitleOptions& options) {
  const auto context = options.context
                           ? std::optional(contextArgument("--context", *options.context))
                           : std::nullopt;
  const auto report = TitleReport::of(TaskDisplayTitle::build(chosenTask(options)), context);
  const std::string text = options.json ? report.json() : report.text();
  std::fwrite(text.data(), 1, text.size(), stdout);
}

void addOptions(CLI::App& command, TitleOptions& options) {
  const auto add = [&](const char* name, auto& value, const char* placeholder, const char* help) {
    command.add_option(name, value, help)->type_name(placeholder);
  };
  add("--type", options.type, "TYPE", "An automatic type's stored name (default: none)");
  add("--target", options.target, "AMOUNT",
      "The target, a time of day as 22:00:00 (default: the type's)");
  add("--unit", options.unit, "UNIT", "The target's unit (default: the type's)");
  add("--title", options.title, "TEXT", "The task's own title");
  add("--partial", options.partial, "N", "Steps that make a completion (default: 1)");
  add("--progress", options.progress, "P", "The share of the target that is done, 0 to 1");
  add("--context", options.context, "CONTEXT", "One surface (default: all)");
  command.add_flag("--negative", options.isNegative, "The task is to stay below the target")
      ->disable_flag_override();
  command.add_flag("--json", options.json, "Prints one JSON object")->disable_flag_override();
}

}  // namespace

void addTitleCommand(CLI::App& app) {
  auto options = std::make_shared<TitleOptions>();
  CLI::App* command = app.add_subcommand("title", "Tells a task's title as each surface shows it");
  addOptions(*command, *options);
  command->footer(
      "The title has what is left of the completion under way. \"velloro types\" lists the "
      "types.\n\n"
      "Examples:\n"
      "  velloro title --type hk_water --target 8 --unit cups_us --title \"Drink water\"\n"
      "  velloro title --type timer --target 600 --unit seconds --title Read --progress 0.98\n"
      "  velloro title --type hk_dietary_sugar --negative --context voiceOver --locale pl_PL");
  command->callback([options] { run(*options); });
}

}  // namespace velloro
