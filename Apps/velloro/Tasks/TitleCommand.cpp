#include "velloro/Tasks/TitleCommand.h"

#include "Foundation/Text/Locale.h"
#include "Foundation/Text/String.h"
#include "OxKit/Numbers.h"
#include "VelloroCore/Titles/TaskTitleSource.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/TypeOptions.h"
#include "velloro/Output/Output.h"
#include "velloro/Tasks/TitleReport.h"

#include <cmath>
#include <cstdio>
#include <optional>
#include <string>

namespace velloro {
namespace {

struct TitleOptions {
  TypeOptions type;
  std::optional<std::string> title;
  std::optional<std::string> partial;
  std::optional<std::string> progress;
  std::optional<std::string> context;
  bool isNegative = false;
  bool json = false;
};

/// The state in which such a share of the target is done.
TaskProgress chosenProgress(const TitleOptions& options, const AutomaticTaskType& type) {
  const auto parts = options.partial ? countArgument("--partial", *options.partial) : 1;
  if (parts < 1) throw UsageError("--partial", *options.partial, "not from 1 on");
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
  TaskTitleSource task{
      .title = options.title.value_or(""), .isNegative = options.isNegative, .now = Date::now()};
  task.automaticTaskType = options.type.value();
  if (task.automaticTaskType) {
    task.isTimed = task.automaticTaskType->isTimed();
    task.progress = chosenProgress(options, *task.automaticTaskType);
    return task;
  }
  if (!options.title) throw UsageError("a --type or a --title is needed");
  for (const auto& [name, value] :
       {std::pair("--partial", options.partial), {"--progress", options.progress}}) {
    if (value) throw UsageError(name, *value, "only with a --type");
  }
  return task;
}

void run(const TitleOptions& options) {
  const auto context = options.context
                           ? std::optional(contextArgument("--context", *options.context))
                           : std::nullopt;
  const auto report =
      TitleReport::of(TaskDisplayTitle::build(chosenTask(options), Locale::current()), context);
  print(options.json ? report.json() : report.text());
}

}  // namespace

void addTitleCommand(const Command& app) {
  const auto [command, options] =
      app.subcommand("title", "Prints a task's title as each surface shows it", run);
  options.type.addTo(command);
  command.option("--title", options.title, "TEXT", "The task's own title");
  command.option("--partial", options.partial, "N", "Steps that make a completion (default: 1)");
  command.option("--progress", options.progress, "P",
                 "The share of the target that is done, 0 to 1");
  command.option("--context", options.context, "CONTEXT", "One surface (default: all)");
  command.flag("--negative", options.isNegative, "The task is a habit to stay below the target");
  command.json(options.json, "Prints one JSON object");
  command.footer(
      "The title shows what is left of the current completion. \"velloro types\" lists the "
      "types.\n\n"
      "Examples:\n"
      "  velloro title --type hk_water --target 8 --unit cups_us --title \"Drink water\"\n"
      "  velloro title --type timer --target 600 --unit seconds --title Read --progress 0.98\n"
      "  velloro title --type hk_dietary_sugar --negative --context voiceOver --locale pl_PL");
}

}  // namespace velloro
