#include "velloro/Notifications/ReminderCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Host/HostStore.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "velloro/Notifications/ReminderWords.h"
#include "velloro/Notifications/WordChoice.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/TaskArgument.h"
#include "velloro/Output/Output.h"

#include <memory>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

namespace velloro {
namespace {

struct ReminderOptions {
  std::string task;
  std::optional<std::string> date, seed;
  bool json = false;
};

void words(const ReminderOptions& options) {
  const HostStore store;
  const auto task = currentTaskArgument(store, options.task);
  const YYYYMMDD day =
      options.date ? dayArgument("--date", *options.date) : logRules(*task).today();
  const auto words = ReminderWords::of(*task, day, WordChoice::argument(options.seed));
  print(options.json ? JSONEncoder{}.encode(words) + "\n" : words.text());
}

}  // namespace

void addReminderCommand(CLI::App& app) {
  auto options = std::make_shared<ReminderOptions>();
  CLI::App* command = app.add_subcommand("reminder", "Shows what reminders say");
  command->require_subcommand(1);
  CLI::App* told = command->add_subcommand(
      "words", "Lists all that a reminder of a task could say, in the order in which it is tried");
  addTaskArgument(*told, options->task);
  told->add_option("--date", options->date, "Day of the reminder (default: today)")
      ->type_name("YYYYMMDD");
  WordChoice::addOption(*told, options->seed);
  told->add_flag("--json", options->json, "Prints one JSON object")->disable_flag_override();
  told->footer(
      "The arrow marks the text that the reminder shows.\n\n"
      "Examples:\n"
      "  velloro reminder words Read\n"
      "  velloro reminder words Read --date 20240309 --seed 7 --json");
  told->callback([options] { words(*options); });
}

}  // namespace velloro
