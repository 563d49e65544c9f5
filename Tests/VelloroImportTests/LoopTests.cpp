#include "Foundation/Process/VirtualEnvironment.h"
#include "ImportText.h"
#include "SQLite/Sqlite.h"
#include "VelloroImport/LoopReader.h"

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::HasSubstr;

const char* const table =
    "Position,Name,Type,Question,Description,FrequencyNumerator,FrequencyDenominator,Color,Unit,"
    "Target Type,Target Value,Archived?\n"
    "1,Run,YES_NO,Did you?,,3,7,#FF8000,,,,false\n"
    "2,Water,NUMERICAL,,,1,1,#000000,glasses,AT_LEAST,8.0,false\n"
    "3,\xE8\xAA\xAD,YES_NO,,\"a, b\",2,10,#000000,,,,true\n"
    "4,Sweets,NUMERICAL,,,1,7,#000000,,AT_MOST,2.0,false\n";

ImportedBackup read(const LoopFiles& files) {
  return readLoopFiles(files, berlin(), importNow()).value();
}

TEST(LoopReader, ReadsTables) {
  const auto imported =
      read({{"Habits.csv", table},
            {"001 Run/Checkmarks.csv",
             "Date,Value,Notes\r\n2024-03-07,YES_MANUAL,\"slow, wet\"\r\n"
             "2024-03-06,YES_AUTO,\r\n2024-03-05,SKIP,\r\n2024-03-04,NO,\r\n"
             "2024-03-03,UNKNOWN,ill\r\n2024-03-02,maybe,\r\n"},
            {"002 Water/Checkmarks.csv",
             "2024-03-07,8000\n2024-03-06,7500\n2024-03-05,0\n"
             "2024-03-04,SKIP\n2024-03-03,YES_MANUAL\n2024-03-02,-1\n"},
            {"003/Checkmarks.csv", "2024-02-29,2\n"},
            {"004 Sweets/Checkmarks.csv", "2024-03-07,3000\n2024-03-06,1000\n2024-03-05,0\n"},
            {"Checkmarks.csv", "Date,Run,Water,\n2024-03-07,2,2,\n"}});
  const auto& tasks = imported.backup.tasks;
  ASSERT_EQ(tasks.size(), 4U);
  const char* const wanted[][2] = {{"1 3 - 1", "-:Did you?;303:ill;307:slow, wet;"},
                                   {"0 - - 8", "-:Unit: glasses;"},
                                   {"5 3 - 1", "-:2 times in 10 days;-:a, b;"},
                                   {"6 - - 2", ""}};
  for (std::size_t i = 0; i < tasks.size(); ++i) {
    EXPECT_EQ(rhythm(tasks[i]), wanted[i][0]);
    EXPECT_EQ(notesOf(tasks[i]), wanted[i][1]);
  }
  using enum TaskLogEntryType;
  const auto types = [&](std::size_t i) {
    std::vector<TaskLogEntryType> all;
    for (const auto& entry : *tasks[i].log) all.push_back(entry.entryType);
    return all;
  };
  EXPECT_THAT(types(0),
              testing::ElementsAre(missedManuallyFull, skippedManuallyFull, completedManuallyFull));
  EXPECT_THAT(types(1), testing::ElementsAre(completedManuallyPartial, skippedManuallyFull,
                                             missedManuallyFull, completedManuallyPartial,
                                             completedManuallyFull));
  EXPECT_THAT(types(3), testing::ElementsAre(completedManuallyFull, missedManuallyPartial,
                                             missedManuallyFull));
  EXPECT_EQ(tasks[1].log->at(3).progress, 7.5);
  EXPECT_EQ(tasks[2].status, TaskStatus::archived);
  EXPECT_TRUE(tasks[3].negativeTask.value());
  EXPECT_EQ(tasks[3].log->back().entryPeriodFrom->intValue(), 20240304);
  EXPECT_EQ(tasks[3].log->back().entryPeriodTo->intValue(), 20240310);
  EXPECT_EQ(tasks[0].taskColor->g, 128.0 / 255);
  for (const char* decision : {"maybe", "the unit \"glasses\"", "calendar week", "first mark"}) {
    EXPECT_THAT(decisionsOf(imported), HasSubstr(decision));
  }
}

TEST(LoopReader, ReadsOlderTables) {
  for (const char* header : {"Position,Name,Description,NumRepetitions,Interval,Color\n1,Read,x,",
                             "Position,Name,Question,Description,NumRepetitions,Interval,Color\n"
                             "1,Read,x,,"}) {
    const auto imported = read({{"Habits.csv", std::string(header) + "1,3,#FF0000\n"},
                                {"001 Read/Checkmarks.csv", "2024-03-07,2\n2024-03-06,1\n"}});
    EXPECT_EQ(rhythm(imported.backup.tasks.front()), "2 - 3 1") << header;
    EXPECT_EQ(imported.backup.tasks.front().log->size(), 1U) << header;
    EXPECT_EQ(notesOf(imported.backup.tasks.front()), "-:x;") << header;
  }
  EXPECT_FALSE(readLoopFiles({}, berlin(), importNow()));
  EXPECT_FALSE(readLoopFiles({{"Habits.csv", "a,a\n"}}, berlin(), importNow()));
}

/// \param statements That make the database.
Result<ImportedBackup> readMade(const std::filesystem::path& file, const char* const statements[],
                                std::size_t count) {
  std::filesystem::remove(file);
  {
    auto database = SqliteConnection::open({.path = file}).value();
    for (std::size_t i = 0; i < count; ++i) EXPECT_TRUE(database->run(statements[i]));
  }
  return readLoopDatabase(file, berlin(), importNow());
}

TEST(LoopReader, ReadsDatabases) {
  const VirtualEnvironment environment;
  const auto file = environment.directories().temporary / "loop.db";
  const char* const newest[] = {
      "CREATE TABLE Habits(id INTEGER PRIMARY KEY, archived, color, description, freq_den, "
      "freq_num, highlight, name, position, reminder_hour, reminder_min, reminder_days NOT NULL "
      "DEFAULT 127, type, target_type, target_value REAL, unit, question, uuid)",
      "CREATE TABLE Repetitions(id INTEGER PRIMARY KEY, habit, timestamp, value, notes)",
      "INSERT INTO Habits VALUES(7,0,3,'why',7,7,0,'Read',1,7,30,2+4,0,0,0,'','Did you?','u1'),"
      "(3,1,3,'',30,1,0,'Km',0,NULL,30,127,1,0,40,'km','','u2')",
      "INSERT INTO Repetitions VALUES(1,7,1709769600000,2,'good'),(2,7,1709683200000,3,''),"
      "(3,7,1709596800000,0,''),(4,3,1709769600000,12500,''),(5,99,1709769600000,2,''),"
      "(6,7,NULL,2,'')",
      "PRAGMA user_version = 25"};
  const auto read = readMade(file, newest, std::size(newest));
  ASSERT_TRUE(read) << read.error()->localizedDescription();
  const auto& tasks = read->backup.tasks;
  ASSERT_EQ(tasks.size(), 2U);
  EXPECT_EQ(rhythm(tasks[0]) + logOf(tasks[0]),
            "7 - - 40A 307=" +
                std::to_string(rawValue(TaskLogEntryType::completedManuallyPartial)) + "/125")
      << "by position";
  EXPECT_EQ(rhythm(tasks[1]), "0 - - 1");
  EXPECT_EQ(remindersOf(tasks[1]), "7:30/3 ") << "Sunday and Monday";
  EXPECT_EQ(notesOf(tasks[1]), "-:Did you?;-:why;307:good;");
  EXPECT_EQ(tasks[1].log->size(), 3U);
  EXPECT_THAT(decisionsOf(*read), HasSubstr("1 rows of no habit"));

  const char* const oldest[] = {
      "CREATE TABLE Habits(id INTEGER PRIMARY KEY, archived, color, description, freq_den, "
      "freq_num, name, position)",
      "CREATE TABLE Repetitions(id INTEGER PRIMARY KEY, habit, timestamp)",
      "INSERT INTO Habits VALUES(1,0,-65536,'Did you?',2,1,'Read',0)",
      "INSERT INTO Repetitions VALUES(1,1,1709769600000),(2,1,1709769600000)",
      "PRAGMA user_version = 13"};
  const auto old = readMade(file, oldest, std::size(oldest));
  ASSERT_TRUE(old) << old.error()->localizedDescription();
  EXPECT_EQ(rhythm(old->backup.tasks.front()) + logOf(old->backup.tasks.front()),
            "2 - 2 1 307=1/10");
  EXPECT_EQ(old->backup.tasks.front().taskColor->r, 1);
  EXPECT_EQ(notesOf(old->backup.tasks.front()), "-:Did you?;");

  const char* const other[] = {"CREATE TABLE Habits(id)"};
  EXPECT_FALSE(readMade(file, other, 1));
  const char* const future[] = {oldest[0], oldest[1], "PRAGMA user_version = 26"};
  EXPECT_FALSE(readMade(file, future, 3));
}

}  // namespace
}  // namespace velloro
