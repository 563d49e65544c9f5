#include "velloro/Exchange/ImportCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/String.h"
#include "Host/BackupImport.h"
#include "Host/HostStore.h"
#include "velloro/Exchange/ImportSource.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Output/Output.h"

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
  const auto [format, document, decisions] = readImportSource(options.file, options.from, now);
  auto report = importBackup(HostStore(), document, wantedOptions, options.isDryRun, now);
  report.decisions.insert(report.decisions.begin(), decisions.begin(), decisions.end());
  if (!options.json) return print(textOf(report, options.isDryRun));
  const Answer answer{.format = format,
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
  command.option("--from", options.from, "FORMAT", importFormats() + " (default: auto)");
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
