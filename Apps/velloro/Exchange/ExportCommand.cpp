#include "velloro/Exchange/ExportCommand.h"

#include "Backup/BackupExport.h"
#include "Foundation/Process/Environment.h"
#include "Host/HostStore.h"
#include "Tasks/Rows/TaskEntity.h"
#include "VelloroBackup/VelloroCSVBackupRow.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/CaseArgument.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/TaskArgument.h"
#include "velloro/Output/GrowingFile.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velloro {
namespace {

struct ExportOptions {
  std::string file;
  std::optional<std::string> format, page;
  std::vector<std::string> tasks;
  bool leavesOutSettings = false, isPretty = false;
};

VelloroBackupFormat formatOf(const ExportOptions& options) {
  if (options.format == "velloro") return VelloroBackupFormat::json;
  if (options.format == "csv") return VelloroBackupFormat::csv;
  if (options.format) throw UsageError("--format", *options.format, "write velloro or csv");
  std::string extension = std::filesystem::path(options.file).extension().string();
  if (!extension.empty()) extension.erase(0, 1);
  return backupFormat(lowercased(extension)).value_or(VelloroBackupFormat::json);
}

BackupExportOptions wanted(const HostStore& store, const ExportOptions& options) {
  BackupExportOptions wanted{.settings = !options.leavesOutSettings};
  if (options.page && !options.tasks.empty()) {
    throw UsageError("--task and --page: one of them at a time");
  }
  if (options.page) {
    wanted.tasks.value = TaskPageNumber{countBetween("--page", *options.page, 0, 326)};
  }
  if (options.tasks.empty()) return wanted;
  BackupExportOptions::Specific ids;
  for (const std::string& text : options.tasks) ids.insert(taskArgument(store, text)->uniqueId());
  wanted.tasks.value = std::move(ids);
  return wanted;
}

void reportWhatIsLeftOut(const BackupExport& backup) {
  for (const auto& [what, count] : backup.leftOut()) {
    Environment::current().report("left out: " + what + " (" + std::to_string(count) + ")");
  }
}

void runExport(const ExportOptions& options) {
  const VelloroBackupFormat format = formatOf(options);
  const Date now = Date::now();
  const HostStore store;
  BackupExport backup(store.context(), wanted(store, options));
  GrowingFile file(options.file, "FILE");
  // Nobody writes meanwhile, so that all of it is of one moment.
  const auto done = store.context().performTransaction([&]() -> Result<void> {
    if (format == VelloroBackupFormat::csv) {
      file.add(csvString(backup.backup(now)));
    } else if (options.isPretty) {
      file.add(backup.backup(now).prettyJsonData());
    } else {
      backup.write([&](std::string_view piece) { file.add(piece); }, now);
    }
    return {};
  });
  if (!done) throw HostError(done.error()->localizedDescription());
  if (format == VelloroBackupFormat::json) file.add("\n");
  file.finish();
  reportWhatIsLeftOut(backup);
}

}  // namespace

void addExportCommand(const Command& app) {
  const auto [command, options] =
      app.subcommand("export", "Writes tasks and logs to a file", runExport);
  command.option("file", options.file, "FILE", "The file to write; - is the standard output")
      .required();
  command.option("--format", options.format, "FORMAT",
                 "velloro or csv (default: by the name of the file, else velloro)");
  command.option("--task", options.tasks, "TASK", "This task alone; may be given several times");
  command.option("--page", options.page, "N", "The tasks of one page alone, counted from 0");
  command.flag("--no-settings", options.leavesOutSettings, "Leaves out the settings");
  command.flag("--pretty", options.isPretty, "Writes JSON with a line for each value");
  command.footer(
      "A table has no frequencies, reminders and categories; what else a file can't hold is named\n"
      "on the standard error.\n\n"
      "Examples:\n"
      "  velloro export habits.velloro\n"
      "  velloro export habits.csv --task Read\n"
      "  velloro export - --pretty");
}

}  // namespace velloro
