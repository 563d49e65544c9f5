#include "velloro/StoreCommand.h"

#include "CoreData/NSPersistentContainer.h"
#include "Foundation/NSFileManager.h"
#include "Foundation/String.h"
#include "Host/HostStore.h"
#include "Tasks/VelloroModel.h"
#include "velloro/Arguments.h"
#include "velloro/Output.h"
#include "velloro/StoreReport.h"

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>

namespace velloro {
namespace {

struct StoreOptions {
  std::optional<std::string> file;
  std::optional<std::string> since;
  bool json = false;
};

/// A store other than the process's own. Looking at one must not make one.
std::unique_ptr<NSPersistentContainer> open(const std::filesystem::path& file) {
  if (!NSFileManager::exists(file)) {
    throw HostError("there is no store " + inQuotes(file.string()));
  }
  auto container = std::make_unique<NSPersistentContainer>(velloroModelName, velloroModel());
  container->setPersistentStoreDescriptions({NSPersistentStoreDescription::initWithURL(file)});
  container->loadPersistentStores([](const auto&, const ErrorPtr& error) {
    if (error) throw Error(*error);
  });
  return container;
}

template <typename Look>
void lookInto(const StoreOptions& options, Look&& look) {
  if (!options.file) return look(HostStore::existing().context());
  const auto container = open(*options.file);
  look(*container->viewContext());
}

void check(const StoreOptions& options) {
  lookInto(options, [&](NSManagedObjectContext& context) {
    const auto report = StoreCheckReport::of(context);
    print(options.json ? report.json() : report.text());
    if (report.findings.empty()) return;
    throw std::runtime_error(inQuotes(report.file) + " is not sound: findings " +
                             std::to_string(report.findings.size()));
  });
}

void stats(const StoreOptions& options) {
  lookInto(options, [&](NSManagedObjectContext& context) {
    const auto report = StoreStats::of(context);
    print(options.json ? report.json() : report.text());
  });
}

void history(const StoreOptions& options) {
  const Date since =
      options.since ? instantArgument("--since", *options.since) : Date::distantPast();
  lookInto(options, [&](NSManagedObjectContext& context) {
    const auto saves = StoreSave::after(since, context);
    std::string text;
    for (const StoreSave& save : saves) text += save.text();
    print(options.json ? StoreSave::json(saves) : text);
  });
}

}  // namespace

void addStoreCommand(CLI::App& app) {
  auto options = std::make_shared<StoreOptions>();
  CLI::App* command = app.add_subcommand("store", "Looks into the store of tasks");
  command->require_subcommand(1);
  const auto add = [&](const char* name, const char* description,
                       void (*work)(const StoreOptions&)) {
    CLI::App* part = command->add_subcommand(name, description);
    part->add_option("file", options->file, "The store (default: the one in the folder of --store)")
        ->type_name("FILE");
    part->add_flag("--json", options->json, "Prints JSON")->disable_flag_override();
    part->callback([options, work] { work(*options); });
    return part;
  };
  add("check", "Tells what is wrong with the store; exit code 1 if anything is", check);
  add("stats", "Tells how much the store holds", stats);
  add("history", "Lists the saves: + inserted, ~ updated, - deleted rows", history)
      ->add_option("--since", options->since, "Only those after this instant")
      ->type_name("INSTANT");
  command->footer(
      "Examples:\n"
      "  velloro store check\n"
      "  velloro store stats --json\n"
      "  velloro store history --since 2024-03-07T00:00:00Z\n"
      "  velloro store check /backup/Velloro-CloudKit.sqlite");
}

}  // namespace velloro
