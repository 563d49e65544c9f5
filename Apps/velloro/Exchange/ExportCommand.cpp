#include "velloro/Exchange/ExportCommand.h"

#include "Backup/BackupExport.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Environment.h"
#include "Host/HostStore.h"
#include "Tasks/Rows/TaskEntity.h"
#include "VelloroBackup/VelloroCSVBackupRow.h"
#include "VelloroExport/HarshWriter.h"
#include "VelloroExport/ICalendarWriter.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/CaseArgument.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/TaskArgument.h"
#include "velloro/Output/GrowingFile.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velloro {
namespace {

struct ExportOptions {
  std::string file;
  std::optional<std::string> format, page;
  std::vector<std::string> tasks;
  bool leavesOutSettings = false, isPretty = false, withLog = false;
};

enum class Form : std::uint8_t { velloro, csv, ical, harsh };

constexpr auto rawValues(std::type_identity<Form>) {
  return caseNames<Form::harsh>();
}

Form formOf(const ExportOptions& options) {
  if (options.format) {
    if (const auto form = fromRawValue<Form>(*options.format)) return *form;
    throw UsageError("--format", *options.format, "write velloro, csv, ical or harsh");
  }
  const std::string extension =
      lowercased(std::filesystem::path(options.file).extension().string());
  return extension == ".csv" ? Form::csv : extension == ".ics" ? Form::ical : Form::velloro;
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

void report(const std::vector<ExportRemark>& remarks) {
  for (const auto& [what, why] : remarks) Environment::current().report(what + ": " + why);
}

/// All of it as of one moment, since nobody writes meanwhile.
void inOneMoment(const HostStore& store, const std::function<void()>& read) {
  const auto done = store.context().performTransaction([&]() -> Result<void> {
    read();
    return {};
  });
  if (!done) throw HostError(done.error()->localizedDescription());
}

void exportCalendar(const HostStore& store, BackupExport& backup, const ExportOptions& options,
                    Date now) {
  ICalendar calendar;
  inOneMoment(store, [&] {
    ICalendarOptions wanted{.withLog = options.withLog, .timeZone = TimeZone::current()};
    for (const auto& task : store.tasks({})) {
      if (const auto id = task->taskUniqueId()) wanted.startsOfDay[*id] = task->startOfDay();
    }
    calendar = iCalendar(backup.backup(now), wanted);
  });
  writeFile(calendar.text, options.file, "FILE");
  report(calendar.remarks);
}

void exportHarsh(const HostStore& store, BackupExport& backup, const ExportOptions& options,
                 Date now) {
  if (options.file == "-") throw UsageError("--format", "harsh", "FILE is a folder of two files");
  HarshFiles files;
  inOneMoment(store, [&] { files = harshFiles(backup.backup(now)); });
  const std::filesystem::path folder = options.file;
  if (const auto made = NSFileManager::createDirectory(folder); !made) {
    throw HostError(made.error()->localizedDescription());
  }
  writeFile(files.habits, folder / "habits", "FILE");
  writeFile(files.log, folder / "log", "FILE");
  report(files.remarks);
}

void exportBackup(const HostStore& store, BackupExport& backup, const ExportOptions& options,
                  Date now) {
  const bool isTable = formOf(options) == Form::csv;
  GrowingFile file(options.file, "FILE");
  inOneMoment(store, [&] {
    if (isTable) {
      file.add(csvString(backup.backup(now)));
    } else if (options.isPretty) {
      file.add(backup.backup(now).prettyJsonData());
    } else {
      backup.write([&](std::string_view piece) { file.add(piece); }, now);
    }
  });
  if (!isTable) file.add("\n");
  file.finish();
  reportWhatIsLeftOut(backup);
}

void runExport(const ExportOptions& options) {
  const Form form = formOf(options);
  const Date now = Date::now();
  const HostStore store;
  BackupExport backup(store.context(), wanted(store, options));
  if (form == Form::ical) return exportCalendar(store, backup, options, now);
  if (form == Form::harsh) return exportHarsh(store, backup, options, now);
  exportBackup(store, backup, options, now);
}

}  // namespace

void addExportCommand(const Command& app) {
  const auto [command, options] =
      app.subcommand("export", "Writes tasks and logs to a file", runExport);
  command
      .option("file", options.file, "FILE",
              "The file to write, for harsh a folder; - is the standard output")
      .required();
  command.option("--format", options.format, "FORMAT",
                 "velloro, csv, ical or harsh (default: by the name of the file, else velloro)");
  command.option("--task", options.tasks, "TASK", "This task alone; may be given several times");
  command.option("--page", options.page, "N", "The tasks of one page alone, counted from 0");
  command.flag("--no-settings", options.leavesOutSettings, "Leaves out the settings");
  command.flag("--pretty", options.isPretty, "Writes JSON with a line for each value");
  command.flag("--with-log", options.withLog,
               "Writes the days that were done into a calendar, too; the other formats always have "
               "them");
  command.footer(
      "A table has no frequencies, reminders and categories, a calendar has the reminders of "
      "active\n"
      "tasks; what else a file can't hold is named on the standard error.\n\n"
      "Examples:\n"
      "  velloro export habits.velloro\n"
      "  velloro export habits.csv --task Read\n"
      "  velloro export habits.ics\n"
      "  velloro export - --pretty");
}

}  // namespace velloro
