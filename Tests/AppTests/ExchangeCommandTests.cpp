#include "AppTests/Program.h"
#include "Foundation/Coding/PropertyList.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "OxKit/Platform.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::HasSubstr;

/// Two stores, seen at noon of a day of March 2024 in Berlin.
class ExchangeCommands : public testing::Test {
 protected:
  ExchangeCommands() {
    for (const char* task :
         {"Read --every mon,wed,fri --icon book --color 3F91CC", "Run --times 3 --per week",
          "'Drink, \"water\"' --type hk_water --target 8 --unit cups_us --partial 8 --page 2",
          "Meditate --timer 300 --partial 2", "Save --total 20 --per month", "Water --every 3d",
          "'No sweets' --negative"}) {
      (void)said("a", std::string("task add ") + task);
    }
    (void)said("a", "reminder add Read 18:30");
    (void)said("a", "reminder add Read 07:15");
    (void)said("a", "task archive Water");
    for (const char* entry : {"Read", "Run skip", "'Drink, \"water\"' --progress 2.5",
                              "'Drink, \"water\"'", "Meditate", "Save --progress 4"}) {
      (void)said("a", std::string("log add ") + entry);
    }
  }

  [[nodiscard]] std::filesystem::path path(const std::string& name) const {
    return environment_.directories().temporary / name;
  }
  [[nodiscard]] std::string in(const std::string& store, const std::string& day = "08") const {
    return " --zone Europe/Berlin --locale en_US --store '" + path(store).string() +
           "' --now 2024-03-" + day + "T12:00:00+01:00";
  }
  std::string said(const std::string& store, const std::string& arguments,
                   const std::string& day = "08") const {
    const auto result = runProgram(arguments + in(store, day));
    EXPECT_EQ(result.exitCode, 0) << arguments << ": " << result.errors;
    return result.output;
  }
  [[nodiscard]] std::string document(const std::string& store) const {
    return said(store, "export -", "09");
  }
  [[nodiscard]] std::string file(const std::string& name, const std::string& bytes) const {
    EXPECT_TRUE(NSFileManager::write(bytes, path(name)));
    return "'" + path(name).string() + "'";
  }
  [[nodiscard]] std::string refusal(const std::string& arguments) const {
    const auto result = runProgram(arguments + in("a"));
    EXPECT_EQ(result.exitCode, 1) << arguments;
    EXPECT_EQ(result.output, "");
    return result.errors;
  }

  const VirtualEnvironment environment_;
};

TEST_F(ExchangeCommands, BringBackWhatTheyTookAlong) {
  const std::string before = document("a");
  const std::string backup = file("a.velloro", before);
  const std::string wouldDo = said("b", "import --json --dry-run " + backup);
  EXPECT_THAT(wouldDo, HasSubstr(R"("dryRun":true,"tasks":{"added":7,"changed":0,"skipped":0})"));
  EXPECT_THAT(document("b"), HasSubstr(R"("tasks":[])"));
  const std::string did = said("b", "import --json " + backup);
  EXPECT_THAT(wouldDo, HasSubstr(did.substr(did.find(R"("tasks")"))));
  EXPECT_EQ(document("b"), before);
  for (const char* strategy : {"merge", "overwrite", "skip"}) {
    const std::string again =
        said("b", std::string("import --json --duplicates ") + strategy + " " + backup);
    EXPECT_THAT(again, HasSubstr(R"("added":0,"changed":0)")) << strategy;
    EXPECT_EQ(document("b"), before) << strategy;
  }
  double total = 0;  // whichever of the two entries of one second is taken for the later one
  const auto glasses = PropertyList::fromJSON(said("b", "log list --json 'Drink, \"water\"'"));
  for (const auto& entry : *glasses.array()) {
    total = std::max(total, *entry["progressTotal"].real());
  }
  EXPECT_EQ(total, 3) << "totals are worked out again";
}

TEST_F(ExchangeCommands, KeepDatedBackupsAndBringThemBack) {
  const std::string before = document("a");
  const auto store = path("a");
  (void)said("a", "backup --verify", "08");
  (void)said("a", "log add Run", "09");
  (void)said("a", "task edit Read --start-of-day 04:00:00", "09");
  const std::string later = said("a", "task list --json", "09");
  EXPECT_THAT(said("a", "backup --verify --keep 2", "09"), HasSubstr("verified"));
  (void)said("a", "task archive Run", "10");
  EXPECT_THAT(said("a", "backup --keep 2", "10"), HasSubstr("removed: "));
  const auto folder = std::filesystem::recursive_directory_iterator(store);
  std::map<std::string, std::filesystem::path> documents;
  std::vector<std::filesystem::path> copies;
  for (const auto& entry : folder) {
    if (entry.path().extension() == ".velloro") documents[entry.path().filename()] = entry.path();
    if (entry.path().filename().string().starts_with("velloro-2024-03-09")) {
      if (entry.path().extension() == ".sqlite") copies.push_back(entry.path());
    }
  }
  ASSERT_EQ(documents.size(), 2U) << "the newest two";
  const std::string second = "'" + documents.begin()->second.string() + "'";
  EXPECT_THAT(said("a", "backup --restore " + second, "10"), HasSubstr("restored: "));
  EXPECT_EQ(said("a", "task list --json", "09"), later) << "also what no document can hold";

  for (const auto& copy : copies) std::filesystem::resize_file(copy, 5000);
  EXPECT_THAT(refusal("backup --restore " + second), HasSubstr("velloro-2024-03-09"));
  EXPECT_EQ(said("a", "task list --json", "09"), later);
  for (const auto& copy : copies) std::filesystem::remove(copy);
  const auto withoutCopies = runProgram("backup --restore " + second + in("b", "10"));
  EXPECT_THAT(withoutCopies.errors, HasSubstr("no copies of the store"));
  EXPECT_THAT(withoutCopies.output, HasSubstr("7 tasks added"));
  EXPECT_EQ(runProgram("backup --restore x --keep 3" + in("a")).exitCode, 2);
}

TEST_F(ExchangeCommands, KeepToTheStrategy) {
  const std::string backup = file("a.velloro", document("a"));
  (void)said("b", "import " + backup);
  (void)said("b", "task edit Read --title Study");
  (void)said("b", "log add Study --date 20240306");
  EXPECT_THAT(said("b", "import --json " + backup), HasSubstr(R"("changed":0,"skipped":0)"));
  EXPECT_THAT(said("b", "task list"), HasSubstr("Study")) << "the store's own fields stay";
  EXPECT_THAT(said("b", "import --json --duplicates overwrite " + backup),
              HasSubstr(R"("tasks":{"added":0,"changed":1,"skipped":0},"entries":{"added":0,)"
                        R"("changed":0,"removed":1})"));
  EXPECT_EQ(document("b"), document("a"));
  EXPECT_THAT(said("b", "import --json --duplicates new " + backup), HasSubstr(R"("added":7)"));
  EXPECT_EQ(PropertyList::fromJSON(document("b"))["tasks"].array()->size(), 14U);

  const auto tasks = PropertyList::fromJSON(document("a"));
  const std::string id = *tasks["tasks"].array()->front()["uniqueId"].text();
  EXPECT_THAT(said("c", "import --json --duplicates new --exclude " + id + " " + backup),
              HasSubstr(R"("added":6,"changed":0,"skipped":1)"));
}

TEST_F(ExchangeCommands, JoinEntriesByDayAndType) {
  const std::string rows =
      "title,entry_type,entry_date\nRead,completed_manually,20240308\n"
      "Read,completed_manually,20240308\nRead,missed_manually,20240306\nWalk,,\n";
  const std::string table = file("rows.csv", rows);
  EXPECT_THAT(said("a", "import --json " + table),
              HasSubstr(R"("tasks":{"added":1,"changed":1,"skipped":0},"entries":{"added":2,)"));
  const std::string once = document("a");
  (void)said("a", "import " + table);
  EXPECT_EQ(document("a"), once) << "the n-th of the table is the n-th of the store";

  // Entries of one second get identifiers, which decide their order, of their own.
  const auto rowsOf = [&](const std::string& store) {
    std::istringstream csv(said(store, "export --format csv -"));
    std::multiset<std::string> lines;
    for (std::string line; std::getline(csv, line);) lines.insert(line);
    return lines;
  };
  (void)said("d", "import " + file("a.csv", said("a", "export --format csv -")));
  EXPECT_EQ(rowsOf("d"), rowsOf("a"));
}

TEST_F(ExchangeCommands, ChangeNothingForAFileThatIsWrong) {
  const std::string before = document("a");
  EXPECT_THAT(refusal("import " + file("x.velloro", R"({"version":1,"timestamp":)"
                                                    R"("2024-03-07T03:00:00Z","tasks":[{"status":)"
                                                    R"("N"},{"status":"N","log":[{}]}]})")),
              HasSubstr("x.velloro: tasks[1].log[0]: The key \"entryType\" is missing."));
  EXPECT_THAT(refusal("import " + file("x.csv", "title,icon\nA,book\n\"B\n")),
              testing::ContainsRegex("x.csv, line 3, column 1: The last .*\nhelp: End the "));
  EXPECT_THAT(refusal("import none.csv"),
              HasSubstr("none.csv: The file under the given URL couldn't be read.\nhelp: "));
  EXPECT_EQ(document("a"), before);
  expectRefusal("import - --duplicates twice" + in("a") + " </dev/null", "--duplicates \"twice\"");
  expectRefusal("export - --page 1 --task Read" + in("a"), "one of them");
}

TEST_F(ExchangeCommands, WriteFilesOfOtherPrograms) {
  (void)said("a", "task edit Read --start-of-day 08:00:00");
  const auto calendar = runProgram("export " + file("a.ics", "") + in("a"));
  EXPECT_THAT(calendar.errors, HasSubstr("\"Run\": no calendar's rule says"));
  const std::string text = NSFileManager::contents(path("a.ics")).value();
  EXPECT_THAT(text, HasSubstr("\r\nDTSTART:20240308T181000\r\nSUMMARY:Read\r\n"));
  EXPECT_THAT(text, HasSubstr("\r\nTRIGGER:PT13H5M\r\n")) << "07:15 of the next date";
  EXPECT_EQ(text.find("VJOURNAL"), std::string::npos);
  EXPECT_THAT(said("a", "export --format ical --with-log --task Read -"), HasSubstr("VJOURNAL"));

  const std::string folder = "'" + path("harsh").string() + "'";
  EXPECT_THAT(runProgram("export --format harsh " + folder + in("a")).errors,
              HasSubstr("\"Save\": its total for a period"));
  EXPECT_THAT(said("b", "import --json " + folder),
              HasSubstr(R"({"format":"harsh","dryRun":false,"tasks":{"added":7,)"));
  EXPECT_THAT(said("b", "export --format harsh '" + path("again").string() + "'"), "");
  std::string habits = NSFileManager::contents(path("harsh") / "habits").value();
  habits.replace(habits.find("Save: 0"), 7, "Save: 1");  // one without a goal is due every day
  EXPECT_EQ(NSFileManager::contents(path("again") / "habits").value(), habits);
  expectRefusal("export --format harsh -" + in("a"), "a folder of two files");
  expectRefusal("export --format pdf -" + in("a"), "velloro, csv, ical or harsh");
}

/// Whenever the program is killed, the store is as before or as after.
TEST_F(ExchangeCommands, AreWholeOrNotAtAll) {
  const std::string backup = file("a.velloro", document("a"));
  (void)said("e", "status");
  const std::string empty = document("e");
  const std::string full = document("a");
  for (int tenths = 0; tenths < 12; ++tenths) {
    (void)runProgram("import " + backup + in("e") + " & sleep 0.0" + std::to_string(tenths * 3) +
                     "; kill -9 $! 2>/dev/null; wait");
    const std::string now = document("e");
    EXPECT_TRUE(now == empty || now == full) << tenths;
  }
}

TEST_F(ExchangeCommands, RecogniseWhatOthersWrite) {
  const std::pair<std::string, std::string> documents[] = {
      {"habitica", R"({"tasks":{"habits":[{"_id":"1","text":"Stretch","up":true}]}})"},
      {"mhabit", R"({"groups":[],"habits":[{"name":"Stretch","start_date":19780}]})"},
      {"taskwarrior", R"([{"uuid":"p","description":"Stretch","recur":"daily"}])"},
      {"taskwarrior", R"({"uuid":"p","description":"Stretch","recur":"daily"})"},
  };
  for (const auto& [format, text] : documents) {
    for (const std::string& from : {std::string("auto"), format}) {
      const auto answer = PropertyList::fromJSON(
          said("b", "import --dry-run --json --from " + from + " " + file("other.json", text)));
      EXPECT_EQ(*answer["format"].text(), format);
      EXPECT_EQ(answer["tasks"]["added"].integer(), 1) << text;
      EXPECT_FALSE(answer["decisions"].array()->empty());
    }
    const auto twice = [&] { (void)said(format, "import " + file("other.json", text)); };
    twice();
    const std::string once = document(format);
    twice();
    EXPECT_EQ(document(format), once) << "what is there already stays";
  }
  const auto refused = runProgram("import --from mhabit " + file("other.json", "[]") + in("b"));
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(refused.errors, HasSubstr("other.json: The document has no list \"habits\"."));
}

}  // namespace
}  // namespace velloro
