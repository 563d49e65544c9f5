#include "ImportText.h"
#include "VelloroImport/HarshReader.h"

#include <map>
#include <string>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::HasSubstr;

ImportedBackup read(const std::string& habits, const std::string& log = "") {
  return readHarsh(habits, log, berlin(), importNow());
}

TEST(HarshReader, ReadsFrequencies) {
  for (const auto& [text, wanted, decided] :
       std::initializer_list<std::tuple<const char*, const char*, const char*>>{
           {"1", "0 - - 1", ""},
           {"0", "0 - - 1", "no goal"},
           {"3", "2 - 3 1", ""},
           {"2w", "2 - 14 1", ""},
           {"1/7", "2 - 7 1", ""},
           {"3/7", "1 3 - 1", "3 days in a calendar week"},
           {"3/1w", "1 3 - 1", "calendar week"},
           {"4/2w", "5 4 - 1", "calendar fortnight"},
           {"10/31", "3 10 - 1", "calendar month"},
           {"100/365", "4 100 - 1", "calendar year"},
           {"2/10", "5 3 - 1", "2 times in 10 days became 3 days in a calendar fortnight"},
           {"7/7", "0 - - 1", ""}}) {
    const auto imported = read(std::string("Read: ") + text + "\n");
    ASSERT_EQ(imported.backup.tasks.size(), 1U) << text;
    EXPECT_EQ(rhythm(imported.backup.tasks.front()), wanted) << text;
    EXPECT_THAT(decisionsOf(imported), HasSubstr(decided)) << text;
  }
  for (const char* line : {"Read", "Read: x", "Read: 1/0", "Read: 1/2/3", "Read: -1",
                           "Read: 1: soon", "Read: 99999999999999999999", "\xFFRead: 1"}) {
    const auto imported = read(std::string("# first\n") + line + "\nRun: 1\n");
    EXPECT_EQ(imported.backup.tasks.size(), 1U) << line;
    EXPECT_THAT(decisionsOf(imported), HasSubstr("habits, line 2: ")) << line;
  }
}

TEST(HarshReader, ReadsTheLog) {
  const auto imported = read("! Body\nRun: 1\nSwim: 2/7\n! Mind\nRead: 1: 2024-03-07\n",
                             "2024-03-05 : Run : y\n2024-03-05 : Run : n\n"
                             "2024-03-06 : Run :  Y  : in rain : 5.5\n2024-03-07 : Run : s\n"
                             "2024-03-05 : Swim : n : no : \n2024-03-06 : Swim : y\n"
                             "2024-03-01 : Gone : y\n2024-02-30 : Run : y\nRun : y\n"
                             "2024-03-07 : Run : maybe\n2024-03-07 : Run : y :  : inf\n");
  const auto& tasks = imported.backup.tasks;
  std::map<std::string, std::string> logs;
  for (const auto& task : tasks) {
    logs[*task.title] = logOf(task);
  }
  EXPECT_EQ(logs["Run"], " 305=7/0 306=1/55 307=3/0") << "the last mark of a day counts";
  EXPECT_EQ(logs["Swim"], " 306=1/10");
  EXPECT_EQ(logs["Gone"], "A 301=1/10");
  EXPECT_EQ(logs["Read"], "A");
  EXPECT_EQ(tasks.front().notes->front().content.body, "in rain");
  EXPECT_EQ(tasks.front().createdTimestamp->iso8601(), "2024-03-04T23:00:00Z");
  ASSERT_EQ(imported.backup.categories->size(), 2U);
  EXPECT_TRUE(tasks[1].categoryIDs->contains(imported.backup.categories->front().uniqueID));
  for (const char* line : {"log, line 8: the day", "log, line 9: has no three",
                           "log, line 10: the r", "log, line 11: the amount",
                           "\"Swim\": 1 days not done", "\"Gone\": stands in the log alone"}) {
    EXPECT_THAT(decisionsOf(imported), HasSubstr(line));
  }
  const auto again = read("Run: 1\n", "2024-03-06 : Run : y\n");
  EXPECT_EQ(again.backup.tasks.front().uniqueId, tasks.front().uniqueId);
  EXPECT_EQ(again.backup.tasks.front().log->front().uniqueId, tasks.front().log->at(1).uniqueId);
}

}  // namespace
}  // namespace velloro
