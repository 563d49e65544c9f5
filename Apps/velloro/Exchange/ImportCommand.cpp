#include "velloro/Exchange/ImportCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/String.h"
#include "Host/BackupImport.h"
#include "Host/HostStore.h"
#include "VelloroBackup/CSVError.h"
#include "VelloroBackup/VelloroCSVBackupRow.h"
#include "VelloroImport/HarshReader.h"
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

enum class Form : std::uint8_t { velloro, csv, harsh };

constexpr const char* nameOf(Form form) {
  return form == Form::velloro ? "velloro" : form == Form::csv ? "csv" : "harsh";
}

Form formOf(VelloroBackupFormat format) {
  return format == VelloroBackupFormat::csv ? Form::csv : Form::velloro;
}

std::optional<Form> givenForm(const ImportOptions& options) {
  const std::string from = options.from.value_or("auto");
  for (const Form form : {Form::velloro, Form::csv, Form::harsh}) {
    if (from == nameOf(form)) return form;
  }
  if (from != "auto") throw UsageError("--from", from, "write auto, velloro, csv or harsh");
  if (std::filesystem::is_directory(options.file)) return Form::harsh;
  std::string extension = std::filesystem::path(options.file).extension().string();
  if (!extension.empty()) extension.erase(0, 1);
  if (lowercased(extension) == "json") return Form::velloro;
  const auto format = backupFormat(lowercased(extension));
  return format ? std::optional(formOf(*format)) : std::nullopt;
}

Form formOfContent(const std::string& bytes) {
  const auto first = bytes.find_first_not_of(" \t\r\n");
  const bool isObject = first != std::string::npos && bytes[first] == '{';
  return isObject ? Form::velloro : Form::csv;
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

std::string bytesOf(const ImportOptions& options, std::optional<Form> form) {
  if (options.file == "-") return standardInput();
  auto bytes = NSFileManager::contents(options.file);
  if (bytes) return *std::move(bytes);
  if (form == Form::csv) {
    throw complaint(options.file, CSVError(CSVError::Kind::unreadableFile));
  }
  throw HostError(bytes.error()->localizedDescription());
}

VelloroJSONBackup parsed(const std::string& bytes, Form form, const std::string& file, Date now) {
  try {
    return form == Form::csv ? loadCSV(bytes, now) : VelloroJSONBackup::fromJSON(bytes);
  } catch (const CSVError& error) {
    throw complaint(file, error);
  } catch (const DecodingError& error) {
    throw HostError(file + ": " + error.localizedDescription());
  }
}

/// The folder is named, or one of the two files in it.
ImportedBackup readHarshFolder(const std::filesystem::path& named, Date now) {
  const auto folder = std::filesystem::is_directory(named) ? named : named.parent_path();
  const auto contentOf = [&](const char* name) {
    auto bytes = NSFileManager::contents(folder / name);
    if (!bytes) throw HostError(bytes.error()->localizedDescription());
    return *std::move(bytes);
  };
  return readHarsh(contentOf("habits"), contentOf("log"), TimeZone::current(), now);
}

struct Source {
  Form form;
  ImportedBackup imported;
};

Source sourceOf(const ImportOptions& options, Date now) {
  const auto given = givenForm(options);
  if (given == Form::harsh) return {Form::harsh, readHarshFolder(options.file, now)};
  const std::string bytes = bytesOf(options, given);
  const Form form = given.value_or(formOfContent(bytes));
  return {form, {.backup = parsed(bytes, form, options.file, now)}};
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
  const Date now = Date::now();
  const auto [form, imported] = sourceOf(options, now);
  auto report = importBackup(HostStore(), imported.backup, wantedOptions, options.isDryRun, now);
  report.decisions.insert(report.decisions.begin(), imported.decisions.begin(),
                          imported.decisions.end());
  if (!options.json) return print(textOf(report, options.isDryRun));
  const Answer answer{.format = nameOf(form),
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
  command
      .option("file", options.file, "FILE", "The file or folder to read; - is the standard input")
      .required();
  command.option("--from", options.from, "FORMAT", "auto, velloro, csv or harsh (default: auto)");
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
