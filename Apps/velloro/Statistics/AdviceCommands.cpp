#include "velloro/Statistics/AdviceCommands.h"

#include "Foundation/Coding/JSON.h"
#include "Host/HostStore.h"
#include "Host/PeriodCloser.h"
#include "Tasks/Rows/TaskEntity.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/CaseArgument.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/TaskArgument.h"
#include "velloro/Output/Output.h"
#include "velloro/Statistics/AdviceReport.h"
#include "velloro/Statistics/NextReport.h"

#include <optional>
#include <string>
#include <vector>

namespace velloro {
namespace {

using Calculator = NextTaskCalculator;

struct NextOptions {
  bool isPrevious = false;
  std::string order = "auto";
  std::optional<std::string> from;
  std::string allowance = "1800";
  std::string negative = "exclude";
  bool json = false;

  [[nodiscard]] Calculator::Request request(Date now) const;
};

constexpr double longestAllowance = 2 * 86400;

Calculator::NegativeTaskMode negativeModeArgument(const std::string& text) {
  using enum Calculator::NegativeTaskMode;
  if (text == "exclude") return exclude;
  if (text == "inline") return inline_;
  if (text == "after") return afterPositive;
  throw UsageError("--negative", text, "write exclude, inline or after");
}

Calculator::Request NextOptions::request(Date now) const {
  return {.after = now,
          .order = caseArgument<Calculator::NextTaskOrder>("--order", order, "order"),
          .from = from ? std::optional(timeArgument("--from", *from)) : std::nullopt,
          .completionAllowance =
              numberBetween("--allowance", allowance, 0, longestAllowance, "0 to 172800"),
          .negativeTaskMode = negativeModeArgument(negative)};
}

void runNext(const NextOptions& options) {
  const Date now = Date::now();
  const auto request = options.request(now);
  const HostStore store;
  const auto tasks = store.tasks({TaskStatus::normal});
  PeriodCloser closer(store.context(), now);
  for (const auto& task : tasks) closer.foresee(*task);
  const auto report = NextReport::of(tasks, request, options.isPrevious);
  print(options.json ? report.json() : report.text());
}

struct AdviceOptions {
  std::vector<std::string> tasks;
  bool isAccepted = false, isDeclined = false;
  bool json = false;
};

std::vector<AdviceReport> reportsOf(const HostStore& store, const AdviceOptions& options,
                                    Date now) {
  std::vector<AdviceReport> reports;
  for (const std::string& name : options.tasks) {
    reports.push_back(AdviceReport::of(*currentTaskArgument(store, name, now), now));
  }
  if (!options.tasks.empty()) return reports;
  PeriodCloser closer(store.context(), now);
  for (const auto& task : store.tasks({TaskStatus::normal})) {
    closer.foresee(*task);
    reports.push_back(AdviceReport::of(*task, now));
  }
  return reports;
}

AdviceReport answer(const HostStore& store, const AdviceOptions& options, Date now) {
  if (options.tasks.size() != 1) throw UsageError("one TASK is needed, whose advice is answered");
  return store.write([&] {
    return answerAdvice(store, *taskArgument(store, options.tasks.front()), options.isAccepted,
                        now);
  });
}

void runAdvice(const AdviceOptions& options) {
  const Date now = Date::now();
  const HostStore store;
  const bool isAnswer = options.isAccepted || options.isDeclined;
  const auto reports =
      isAnswer ? std::vector{answer(store, options, now)} : reportsOf(store, options, now);
  if (options.json) return print(JSONEncoder{}.encode(reports) + "\n");
  const std::string what = options.isAccepted ? "Accepted: " : "Declined: ";
  print(isAnswer ? what + reports.front().line() + "\n" : table(reports));
}

}  // namespace

void addNextCommand(const Command& app) {
  const auto [command, options] = app.subcommand("next", "Lists what to do next", runNext);
  command.flag("--previous", options.isPrevious, "Lists what is done instead");
  command.option("--order", options.order, "ORDER", "auto: by time; do: as tasks are displayed")
      .showsDefault();
  command.option("--from", options.from, "HH:MM", "A time of day to go by instead of now");
  command
      .option("--allowance", options.allowance, "SECONDS", "How far from now still counts as now")
      .showsDefault();
  command
      .option("--negative", options.negative, "MODE",
              "Where habits to avoid stand: exclude, inline or after")
      .showsDefault();
  command.json(options.json, "Prints one JSON object");
  command.footer(
      "Examples:\n"
      "  velloro next\n"
      "  velloro next --from 18:00 --negative after --json");
}

void addAdviceCommand(const Command& app) {
  const auto [command, options] =
      app.subcommand("advice", "Tells which tasks to make easier or harder", runAdvice);
  command.option("tasks", options.tasks, "TASK", "Tasks, by title or id (default: all)");
  command.flag("--accept", options.isAccepted, "Makes the change");
  command
      .flag("--decline", options.isDeclined,
            "Leaves the task; the advice returns on stronger evidence only")
      .excludes({"--accept"});
  command.json(options.json, "Prints an array of JSON objects");
  command.footer(
      "Examples:\n"
      "  velloro advice\n"
      "  velloro advice Read --accept");
}

}  // namespace velloro
