#include "Foundation/Process/VirtualEnvironment.h"
#include "VelloroBackup/CSVReader.h"
#include "VelloroBackup/VelloroCSVBackupRow.h"

#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using Kind = CSVError::Kind;
using ::testing::ElementsAre;

const std::string header =
    "task_id,title,icon,entry_type,entry_date,entry_timestamp,quantity,page,notes\n";

std::vector<std::vector<std::string>> rowsOf(std::string_view csv) {
  CSVReader reader(csv);
  std::vector<std::vector<std::string>> rows;
  while (reader.next()) {
    auto& row = rows.emplace_back();
    for (const auto& field : reader.fields()) row.emplace_back(field.text);
  }
  return rows;
}

TEST(CSVReader, ReadsItsDialect) {
  using Rows = std::vector<std::vector<std::string>>;
  for (const auto& [csv, rows] : std::vector<std::pair<std::string, Rows>>{
           {"a,b", {}},
           {"a,b\n", {}},
           {"a,b\n1,2", {{"1", "2"}}},
           {"a,b\n1,\n,\n", {{"1", ""}, {"", ""}}},
           {"a,b\n1,", {{"1", ""}}},
           {"a\n\n\n", {{""}, {""}}},
           {"a,b\n\"1,\n\"\"2\"\"\",\"\"\n", {{"1,\n\"2\"", ""}}},
           {"a,b\n 1 ,x\ry\n", {{" 1 ", "x\ry"}}},
           {"a,b\n1,2\r", {{"1", "2\r"}}},
           {"\xEF\xBB\xBF\"a\",b\nż,2\n", {{"ż", "2"}}},
           {std::string("\xFF\xFE"
                        "a\0\n\0\x3D\xD8\xB2\xDE",
                        10),
            {{"🚲"}}},
           {std::string("\xFE\xFF"
                        "\0a\0\n\xD8\x3D\xDE\xB2",
                        10),
            {{"🚲"}}}}) {
    EXPECT_EQ(rowsOf(csv), rows) << csv;
  }
}

TEST(CSVReader, NamesEachFaultAndItsPlace) {
  struct Case {
    std::string csv;
    Kind kind;
    CSVPlace place;
  };
  for (const auto& [csv, kind, place] :
       std::vector<Case>{{"", Kind::emptyHeader, {1, 1}},
                         {"\na\n", Kind::emptyHeader, {1, 1}},
                         {"a,\"b\",b\n", Kind::equalHeaders, {1, 7}},
                         {"a,b\n1,2\n3\n", Kind::differentLength, {3, 1}},
                         {"a,b\n\n", Kind::differentLength, {2, 1}},
                         {"a\n\"x\ny\"\n1,2", Kind::differentLength, {4, 1}},
                         {"a,b\n1,ż,\"2\n\n", Kind::endInQuotes, {2, 5}},
                         {"a,b\n1,ż\"2\"\n", Kind::quoteInField, {2, 4}},
                         {"a,b\n\"x\ny\"z,1\n", Kind::textBehindQuote, {3, 3}},
                         {"a,b\r\n1,2\r\n", Kind::textBehindQuote, {1, 4}},
                         {"a\n\"1\"\r\n", Kind::textBehindQuote, {2, 4}},
                         {"a,b\nżż,\xFF\n\"", Kind::notUTF8, {2, 4}},
                         {"a\n\xC5\n", Kind::notUTF8, {2, 1}},
                         {std::string("\xFF\xFE"
                                      "a\0\n\0\xB2\xDE",
                                      8),
                          Kind::notUTF8,
                          {2, 1}}}) {
    try {
      (void)rowsOf(csv);
      ADD_FAILURE() << csv;
    } catch (const CSVError& error) {
      EXPECT_EQ(error.kind(), kind) << csv;
      ASSERT_TRUE(error.place()) << csv;
      EXPECT_EQ(*error.place(), place)
          << csv << error.place()->line << "," << error.place()->column;
      EXPECT_FALSE(error.localizedDescription().empty() || error.help().empty()) << csv;
    }
  }
}

TEST(CSVBackup, NamesAValueThatIsNone) {
  for (const auto& [row, message, column] :
       {std::tuple(",A,,allowed_missed_manually,,,,,",
                   "\"allowed_missed_manually\" is no value of the column \"entry_type\"", 5U),
        {",A,,,2024-03-07,,,,", "\"2024-03-07\" is no value of the column \"entry_date\"", 6U},
        {",,no_such,,,,,,", "\"no_such\" is no value of the column \"icon\"", 3U},
        {",A,,,,,1x,,", "\"1x\" is no value of the column \"quantity\"", 8U},
        {",A,,,,,,1.5,", "\"1.5\" is no value of the column \"page\"", 9U},
        {",A,,,,\"soon\",,,",
         "'soon' couldn't be transformed into a Date using the '.iso8601' strategy.", 7U}}) {
    try {
      (void)loadCSV(header + row + "\n", Date());
      ADD_FAILURE() << row;
    } catch (const CSVError& error) {
      EXPECT_EQ(error.localizedDescription(), message);
      EXPECT_EQ(*error.place(), (CSVPlace{2, column})) << row;
      EXPECT_EQ(error.help(), "");
    }
  }
}

TEST(CSVBackup, JoinsRowsToTasks) {
  const Date now = Date::fromISO8601("2024-03-07T12:00:00Z").value();
  const std::string id = "B4313FC4-0000-4000-8000-000000000000";
  const auto backup =
      loadCSV(header + id +
                  ",Read,ic_book,unknown,20240306,,,,\n"
                  ",Run,,,20240306,,2,1,a\n" +
                  "x,Run,,,,,,,\n,,,completed_auto,20240306,,,,\n" + id +
                  ",Other,,completed_manually,20240307,"
                  "2024-03-07T03:00:00.250+01:00,2.5,,\n,Run,,missed_auto,20240307,,,,\n",
              now);
  ASSERT_EQ(backup.tasks.size(), 3U);
  EXPECT_EQ(backup.tasks[0].title, "Run");
  EXPECT_EQ(backup.tasks[0].pageNumber, TaskPageNumber{1});
  ASSERT_EQ(backup.tasks[0].log->size(), 1U) << "without a type there is no entry";
  EXPECT_EQ(backup.tasks[0].log->front().entryType, TaskLogEntryType::missedAutomaticallyFull);
  const auto& read = backup.tasks[1];
  EXPECT_EQ(read.title, "Read");
  EXPECT_EQ(read.uniqueId->stringValue(), id);
  EXPECT_EQ(read.log->at(0).entryType, TaskLogEntryType::unknown);
  EXPECT_EQ(read.log->at(1).progress, 2.5);
  EXPECT_EQ(read.log->at(1).createdTimestamp, Date::fromISO8601("2024-03-07T02:00:00.25Z"));
  EXPECT_EQ(backup.tasks[2].uniqueId, std::nullopt);
  EXPECT_EQ(backup.backupDescription, "Converted from CSV");
  EXPECT_EQ(backup.timestamp, now);
}

/// What rows can hold comes back; notes are written beside the entries of their day, and don't.
TEST(CSVBackup, ComesBackAsItWent) {
  const VirtualEnvironment environment;
  std::mt19937 random(7);
  const auto pick = [&](int count) {
    return static_cast<int>(random() % static_cast<unsigned>(count));
  };
  const std::string pieces[] = {"a", ",", "\"", "\n", "\r", "ż", " ", "🚲"};
  for (int round = 0; round < 300; ++round) {
    VelloroJSONBackup backup{.timestamp = Date::now(),
                             .backupType = VelloroJSONBackup::BackupType::automated,
                             .backupDescription = "Converted from CSV"};
    for (int t = pick(4); t > 0; --t) {
      auto& task = backup.tasks.emplace_back();
      task.uniqueId = UniqueID::create();
      task.title = "x";
      for (int i = pick(6); i > 0; --i) *task.title += pieces[pick(8)];
      if (pick(2) == 0) task.pageNumber = TaskPageNumber{pick(5)};
      task.log.emplace();
      for (int e = pick(5); e > 0; --e) {
        VelloroJSONBackupTaskEntry entry{.entryType = static_cast<TaskLogEntryType>(pick(16)),
                                         .entryDate = YYYYMMDD{2024, 3, 1 + pick(28)}};
        if (pick(2) == 0) entry.progress = pick(1000) / 8.0;
        if (pick(2) == 0) entry.createdTimestamp = Date::sinceReferenceDate(pick(1'000'000) / 4.0);
        task.log->push_back(entry);
      }
    }
    const std::string csv = csvString(backup);
    EXPECT_EQ(loadCSV(csv, Date::now()), backup) << csv;
    if (backup.tasks.empty() || backup.tasks[0].log->empty()) continue;
    const YYYYMMDD day = backup.tasks[0].log->front().entryDate;
    backup.tasks[0].notes = {{.date = day, .content = {"one"}},
                             {.content = {"of no day"}},
                             {.date = day, .content = {"two"}}};
    EXPECT_THAT(csvString(backup), ::testing::HasSubstr(",\"one\ntwo\"\n"));
  }
}

}  // namespace
}  // namespace velloro
