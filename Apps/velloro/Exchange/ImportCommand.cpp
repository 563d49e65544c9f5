#include "velloro/Exchange/ImportCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/String.h"
#include "Host/BackupImport.h"
#include "Host/HostStore.h"
#include "VelloroBackup/CSVError.h"
#include "VelloroBackup/VelloroCSVBackupRow.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Output/HelpfulError.h"
#include "velloro/Output/Output.h"

#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velloro {
namespace {

struct ImportOptions {
  std::string file;
  std::optional<std::string> from, duplicates;
  std::vector<std::string> excluded;
  bool isDryRun = false, json = false;
};

/// What `--json` prints.
struct Answer {
  std::string format;
  bool dryRun = false;
  BackupImportReport::Tasks tasks = {};
  BackupImportReport::Rows entries = {}, notes = {}, categories = {}, settings = {};
  std::vector<BackupImportReport::Decision> decisions = {};

  static constexpr auto codingKeys =
      keys(key("format", &Answer::format), key("dryRun", &Answer::dryRun),
           key("tasks", &Answer::tasks), key("entries", &Answer::entries),
           key("notes", &Answer::notes), key("categories", &Answer::categories),
           key("settings", &Answer::settings), key("decisions", &Answer::decisions));
};

std::optional<VelloroBackupFormat> givenFormat(const ImportOptions& options) {
  const std::string from = options.from.value_or("auto");
  if (from == "velloro") return VelloroBackupFormat::json;
  if (from == "csv") return VelloroBackupFormat::csv;
  if (from != "auto") throw UsageError("--from", from, "write auto, velloro or csv");
  std::string extension = std::filesystem::path(options.file).extension().string();
  if (!extension.empty()) extension.erase(0, 1);
  if (lowercased(extension) == "json") return VelloroBackupFormat::json;
  return backupFormat(lowercased(extension));
}

VelloroBackupFormat formatOfContent(const std::string& bytes) {
  const auto first = bytes.find_first_not_of(" \t\r\n");
  const bool isObject = first != std::string::npos && bytes[first] == '{';
  return isObject ? VelloroBackupFormat::json : VelloroBackupFormat::csv;
}

std::string standardInput() {
  std::string bytes;
  char buffer[65536];
  while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, stdin)) {
    bytes.append(buffer, count);
  }
  return bytes;
}

HelpfulError complaint(const std::string& file, const CSVError& error) {
  std::string text = file;
  if (const auto& place = error.place()) {
    text += ", line " + std::to_string(place->line) + ", column " + std::to_string(place->column);
  }
  return {text + ": " + error.localizedDescription(), std::string(error.help())};
}

std::string bytesOf(const ImportOptions& options, std::optional<VelloroBackupFormat> format) {
  if (options.file == "-") return standardInput();
  auto bytes = NSFileManager::contents(options.file);
  if (bytes) return *std::move(bytes);
  if (format == VelloroBackupFormat::csv) {
    throw complaint(options.file, CSVError(CSVError::Kind::unreadableFile));
  }
  throw HostError(bytes.error()->localizedDescription());
}

VelloroJSONBackup parsed(const std::string& bytes, VelloroBackupFormat format,
                         const std::string& file, Date now) {
  try {
    return format == VelloroBackupFormat::csv ? loadCSV(bytes, now)
                                              : VelloroJSONBackup::fromJSON(bytes);
  } catch (const CSVError& error) {
    throw complaint(file, error);
  } catch (const DecodingError& error) {
    throw HostError(file + ": " + error.localizedDescription());
  }
}

BackupImportOptions wanted(const ImportOptions& options) {
  using enum BackupImportOptions::DuplicateInBackupStrategy;
  BackupImportOptions wanted;
  const std::string strategy = options.duplicates.value_or("merge");
  if (strategy == "skip") {
    wanted.duplicateInBackupStrategy = skip;
  } else if (strategy == "overwrite") {
    wanted.duplicateInBackupStrategy = overwrite;
  } else if (strategy == "new") {
    wanted.duplicateInBackupStrategy = importWithNewID;
  } else if (strategy != "merge") {
    throw UsageError("--duplicates", strategy, "write merge, skip, overwrite or new");
  }
  for (const std::string& text : options.excluded) {
    const auto id = UniqueID::fromString(text);
    if (!id) throw UsageError("--exclude", text, "not an identifier");
    wanted.excludeActiveTaskIDs.insert(*id);
    wanted.excludeArchivedTaskIDs.insert(*id);
  }
  return wanted;
}

std::string line(const char* what, std::int64_t added, std::int64_t changed, const char* last,
                 std::int64_t others) {
  return stringWithFormat("%-11s%lld added, %lld changed, %lld %s\n", what,
                          static_cast<long long>(added), static_cast<long long>(changed),
                          static_cast<long long>(others), last);
}

std::string textOf(const BackupImportReport& report, bool isDryRun) {
  const auto rows = [](const char* what, const BackupImportReport::Rows& counts) {
    const bool isNothing = counts == BackupImportReport::Rows();
    return isNothing ? "" : line(what, counts.added, counts.changed, "removed", counts.removed);
  };
  std::string text = isDryRun ? "Nothing was changed; the import would change:\n" : "";
  text += line("tasks", report.tasks.added, report.tasks.changed, "skipped", report.tasks.skipped) +
          rows("entries", report.entries) + rows("notes", report.notes) +
          rows("categories", report.categories) + rows("settings", report.settings);
  for (const auto& [what, why] : report.decisions) {
    text += terminalText(what) + ": " + terminalText(why) + "\n";
  }
  return text;
}

void runImport(const ImportOptions& options) {
  const auto wantedOptions = wanted(options);
  const auto given = givenFormat(options);
  const Date now = Date::now();
  const std::string bytes = bytesOf(options, given);
  const VelloroBackupFormat format = given.value_or(formatOfContent(bytes));
  const auto backup = parsed(bytes, format, options.file, now);
  const auto report = importBackup(HostStore(), backup, wantedOptions, options.isDryRun, now);
  if (!options.json) return print(textOf(report, options.isDryRun));
  const Answer answer{.format = std::string(fileExtension(format)),
                      .dryRun = options.isDryRun,
                      .tasks = report.tasks,
                      .entries = report.entries,
                      .notes = report.notes,
                      .categories = report.categories,
                      .settings = report.settings,
                      .decisions = report.decisions};
  print(JSONEncoder{}.encode(answer) + "\n");
}

}  // namespace

void addImportCommand(const Command& app) {
  const auto [command, options] =
      app.subcommand("import", "Takes tasks and logs over from a file", runImport);
  command.option("file", options.file, "FILE", "The file to read; - is the standard input")
      .required();
  command.option("--from", options.from, "FORMAT", "auto, velloro or csv (default: auto)");
  command.option("--duplicates", options.duplicates, "STRATEGY",
                 "For tasks that are in the store already: merge, skip, overwrite or new "
                 "(default: merge)");
  command.option("--exclude", options.excluded, "ID",
                 "Leaves out the task of that identifier; may be given several times");
  command.flag("--dry-run", options.isDryRun, "Says what would change, and changes nothing");
  command.json(options.json);
  command.footer(
      "A file that can't be read in full changes nothing.\n\n"
      "Examples:\n"
      "  velloro import habits.velloro --dry-run\n"
      "  velloro import habits.csv --duplicates skip");
}

}  // namespace velloro
