#include "velloro/Store/StoreCommand.h"

#include "CoreData/Context/NSPersistentContainer.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Text/String.h"
#include "Host/HostStore.h"
#include "OxKit/RuntimeError.h"
#include "Tasks/Rows/VelloroModel.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Output/Output.h"
#include "velloro/Store/StoreReport.h"

#include <memory>
#include <optional>
#include <string>

namespace velloro {
namespace {

struct StoreOptions {
  std::optional<std::string> file;
  std::optional<std::string> since;
  bool json = false;
};

/// Looking at a store must neither make nor change one.
std::unique_ptr<NSPersistentContainer> open(const std::filesystem::path& file, StoreAccess access) {
  auto description = NSPersistentStoreDescription::initWithURL(file);
  description.access = access;
  auto container = std::make_unique<NSPersistentContainer>(velloroModelName, velloroModel());
  container->setPersistentStoreDescriptions({std::move(description)});
  container->loadPersistentStores([](const auto&, const ErrorPtr& error) {
    if (error) throw Error(*error);
  });
  return container;
}

/// Null where programs that have it open may have spoilt the look at it.
std::unique_ptr<NSPersistentContainer> openAtRest(const std::filesystem::path& file) {
  try {
    return open(file, StoreAccess::atRest);
  } catch (const Error&) {
    if (!NSFileManager::exists(file.string() + "-shm")) throw;
    return nullptr;
  }
}

/// What `look` makes of the store's context. First as the file lies there, which changes nothing
/// and asks for no more than that it can be read. If somebody writes it meanwhile, what was read
/// may not fit together: then once more with locks, as one of the programs that have it open.
template <typename Look>
auto lookInto(const StoreOptions& options, Look&& look) {
  const auto file = options.file ? std::filesystem::path(*options.file) : HostStore::existingFile();
  if (!NSFileManager::exists(file)) {
    throw HostError("there is no store \"" + file.string() + "\"");
  }
  if (const auto atRest = openAtRest(file)) {
    const auto& store = *atRest->persistentStoreCoordinator();
    try {
      auto seen = look(*atRest->viewContext());
      if (!store.hasBeenWritten()) return seen;
    } catch (const Error&) {
      if (!store.hasBeenWritten()) throw;
    }
  }
  return look(*open(file, StoreAccess::readOnly)->viewContext());
}

void check(const StoreOptions& options) {
  const auto report = lookInto(options, StoreCheckReport::of);
  print(options.json ? report.json() : report.text());
  if (report.findings.empty()) return;
  throw RuntimeError(inQuotes(report.file) + " is not sound: findings " +
                     std::to_string(report.findings.size()));
}

void stats(const StoreOptions& options) {
  const auto report = lookInto(options, StoreStats::of);
  print(options.json ? report.json() : report.text());
}

void history(const StoreOptions& options) {
  const Date since =
      options.since ? instantArgument("--since", *options.since) : Date::distantPast();
  const auto [saves, damage] = lookInto(
      options, [&](NSManagedObjectContext& context) { return StoreSave::after(since, context); });
  std::string text;
  for (const StoreSave& save : saves) text += save.text();
  print(options.json ? StoreSave::json(saves) : text);
  if (damage != nullptr) throw Error(*damage);
}

}  // namespace

void addStoreCommand(const Command& app) {
  const Command family =
      app.subcommand("store", "Checks the store of tasks, and shows its history");
  const auto add = [&](const char* name, const char* help, void (*work)(const StoreOptions&)) {
    const auto part = family.subcommand(name, help, work);
    part.command.json(part.options.json);
    part.command.option("file", part.options.file, "FILE",
                        "The store (default: the one in the folder of --store)");
    return part;
  };
  add("check", "Lists what is wrong with the store; exit code 1 if anything is", check);
  add("stats", "Prints how much the store holds", stats);
  const auto [command, options] =
      add("history", "Lists the saves: + inserted, ~ updated, - deleted rows", history);
  command.option("--since", options.since, "INSTANT", "Only those after this instant");
  family.footer(
      "Examples:\n"
      "  velloro store check\n"
      "  velloro store stats --json\n"
      "  velloro store history --since 2024-03-07T00:00:00Z\n"
      "  velloro store check /backup/Velloro-CloudKit.sqlite");
}

}  // namespace velloro
