#include "VelloroExport/HarshWriter.h"
#include "VelloroImport/HarshReader.h"

#include <string>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::HasSubstr;

const Date now = Date::fromISO8601("2024-03-08T11:00:00Z").value();

std::string remarks(const std::vector<ExportRemark>& of) {
  std::string all;
  for (const auto& [what, why] : of) all += what + ": " + why + "\n";
  return all;
}

TEST(HarshWriter, SaysFrequencies) {
  using enum DayMode;
  const auto monday = DaysOfWeek::monday;
  for (const auto& [task, wanted, remark] :
       std::initializer_list<std::tuple<VelloroJSONBackupTask, const char*, const char*>>{
           {{.daysMode = specificDaysOfWeek, .daysOfWeek = DaysOfWeek::everyDay}, "1", ""},
           {{.daysMode = specificDaysOfWeek, .daysOfWeek = monday}, "1/7", "weekdays became 1/7"},
           {{.daysMode = specificDaysOfWeek, .daysOfWeek = DaysOfWeek()}, "0", "on no day"},
           {{.daysMode = dayInterval, .dayInterval = 3}, "3", ""},
           {{.daysMode = numberOfDaysInWeek, .numCompletions = 3}, "3/7", ""},
           {{.daysMode = numberOfDaysInFortnight, .numCompletions = 20}, "14/14", ""},
           {{.daysMode = numberOfDaysInMonth, .numCompletions = 4}, "4/30", ""},
           {{.daysMode = numberOfDaysInYear, .numCompletions = 9}, "9/365", ""},
           {{.daysMode = aggregateOverMonth, .numCompletions = 4}, "0", "total for a period"},
           {{.status = TaskStatus::archived}, "1: 2024-03-06", ""},
           {{.status = TaskStatus::paused}, "1", "paused"},
           {{.negativeTask = true}, "1", "to avoid"}}) {
    VelloroJSONBackupTask named = task;
    named.title = "Read";
    const auto files = harshFiles({.timestamp = now, .tasks = {named}});
    EXPECT_EQ(files.habits, "Read: " + std::string(wanted) + "\n");
    EXPECT_THAT(remarks(files.remarks), HasSubstr(remark));
    EXPECT_EQ(files.remarks.empty(), std::string(remark).empty());
  }
}

TEST(HarshWriter, WritesWhatIsReadAgain) {
  using enum TaskLogEntryType;
  const UniqueID mind = UniqueID::create();
  const auto entry = [](std::int64_t day, TaskLogEntryType type, double progress) {
    return VelloroJSONBackupTaskEntry{
        .entryType = type, .entryDate = {2024, 3, day}, .progress = progress};
  };
  const VelloroJSONBackup backup{
      .timestamp = now,
      .tasks = {{.title = "Read : a\nbook:",
                 .log = std::vector{entry(5, completedManuallyFull, 2.5),
                                    entry(4, completedManuallyPartial, 0.5),
                                    entry(5, completedManuallyPartial, 1),
                                    entry(6, skippedAutomaticallyFull, 0),
                                    entry(7, missedManuallyFull, 0)},
                 .categoryIDs = std::set{mind},
                 .notes = std::vector<VelloroJSONBackupNote>{{.date = YYYYMMDD{2024, 3, 5},
                                                              .content = {" in bed : late\r\n"}},
                                                             {.content = {"of no day"}}}},
                {.title = "# Run"},
                {.title = "# Run"},
                {.status = TaskStatus::trashed}},
      .categories = std::vector<VelloroJSONBackupCategory>{{mind, "My\nmind"}}};
  const auto files = harshFiles(backup);
  EXPECT_EQ(files.habits, "- Run: 1\n- Run 2: 1\n! My mind\nRead - a book-: 1\n");
  EXPECT_EQ(files.log,
            "2024-03-04 : Read - a book- : n :  : 0.5\n"
            "2024-03-05 : Read - a book- : y : in bed - late : 3.5\n"
            "2024-03-06 : Read - a book- : s :  : 0\n2024-03-07 : Read - a book- : n :  : 0\n");
  EXPECT_THAT(remarks(files.remarks), HasSubstr("1 notes stand on no day"));
  const auto again = harshFiles(readHarsh(files.habits, files.log, TimeZone::gmt(), now).backup);
  EXPECT_EQ(again.habits, files.habits);
  std::string log = files.log;
  EXPECT_EQ(again.log, log.replace(log.find("0.5"), 3, "0")) << "a day not done has no amount";
}

}  // namespace
}  // namespace velloro
