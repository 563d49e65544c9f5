#include "velloro/Exchange/BackupCommand.h"

#include "Foundation/Process/Environment.h"
#include "Foundation/Process/Terminal.h"
#include "Host/StoreBackup.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Output/Output.h"

#include <cstddef>
#include <limits>
#include <optional>
#include <string>

namespace velloro {
namespace {

struct BackupOptions {
  std::optional<std::string> keep, restored;
  bool verifies = false;
};

void restore(const std::filesystem::path& document) {
  const RestoredBackup restored = restoreStoreBackup(document, Date::now());
  for (const auto& store : restored.stores) {
    print("restored: " + terminalText(store.string()) + "\n");
  }
  if (!restored.document) return;
  const auto& tasks = restored.document->tasks;
  print("restored: " + std::to_string(tasks.added) + " tasks added, " +
        std::to_string(tasks.changed) + " changed\n");
  for (const auto& [what, why] : restored.document->decisions) {
    print(terminalText(what) + ": " + terminalText(why) + "\n");
  }
  Environment::current().report(
      "there are no copies of the store beside the document: it has no start of day, pinned zone, "
      "profile and snooze of a task, and no running timers; tasks that were made since stay");
}

void runBackup(const BackupOptions& options) {
  if (options.restored) {
    if (options.keep || options.verifies) {
      throw UsageError("--restore goes with neither --keep nor --verify");
    }
    return restore(*options.restored);
  }
  constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
  std::optional<std::int64_t> kept;
  if (options.keep) kept = countBetween("--keep", *options.keep, 1, most);
  const auto document = writeStoreBackup(Date::now());
  print(terminalText(document.string()) + "\n");
  if (options.verifies) {
    verifyStoreBackup(document);
    print("verified\n");
  }
  if (!kept) return;
  for (const auto& dropped : dropStoreBackups(static_cast<std::size_t>(*kept))) {
    print("removed: " + terminalText(dropped.string()) + "\n");
  }
}

}  // namespace

void addBackupCommand(const Command& app) {
  const auto [command, options] =
      app.subcommand("backup", "Keeps a dated copy of everything, or brings one back", runBackup);
  command.option("--keep", options.keep, "N", "Removes all but the newest N backups afterwards");
  command.flag("--verify", options.verifies, "Reads the new backup back and checks it");
  command.option("--restore", options.restored, "FILE", "The document of the backup to bring back");
  command.footer(
      "A backup is a document as \"export\" writes it, with copies of the store's files beside "
      "it,\n"
      "in the folder Backups beside the store.\n\n"
      "Examples:\n"
      "  velloro backup --verify --keep 7\n"
      "  velloro backup --restore velloro-2024-03-07T110000Z.velloro");
}

}  // namespace velloro
