#include "ImportText.h"
#include "VelloroImport/JSONReaders.h"

#include <string>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::HasSubstr;

using Read = Result<ImportedBackup> (*)(std::string_view, const TimeZone&, Date);

struct Case {
  std::string json;
  const char* rhythm;
  const char* log;
  const char* decided = "";
};

void expect(Read read, const Case& wanted) {
  const auto imported = read(wanted.json, berlin(), importNow());
  ASSERT_TRUE(imported) << wanted.json << imported.error()->localizedDescription();
  ASSERT_FALSE(imported->backup.tasks.empty()) << wanted.json;
  const auto& task = imported->backup.tasks.front();
  EXPECT_EQ(rhythm(task), wanted.rhythm) << wanted.json;
  EXPECT_EQ(logOf(task), wanted.log) << wanted.json;
  EXPECT_THAT(decisionsOf(*imported), HasSubstr(wanted.decided)) << wanted.json;
}

std::string daily(const std::string& members) {
  return R"({"preferences":{"dayStart":3},"tasks":{"dailys":[{"_id":"1","text":"Read",)" + members +
         "}]}}";
}

TEST(HabiticaReader, ReadsDailies) {
  for (const Case& one : std::initializer_list<Case>{
           {daily(R"("frequency":"daily","everyX":1)"), "0 - - 1", ""},
           {daily(R"("frequency":"daily","everyX":3)"), "2 - 3 1", ""},
           {daily(R"("frequency":"daily","everyX":0)"), "0 - - 1", "P"},
           {daily(R"("frequency":"weekly","everyX":2,"repeat":{"m":true})"), "2 - 14 1", ""},
           {daily(R"("frequency":"weekly","everyX":2,"repeat":{"m":true,"su":true})"), "0 - - 1",
            "", "not every 2"},
           {daily(R"("frequency":"monthly","everyX":1,"daysOfMonth":[1,15])"), "3 2 - 1", "",
            "number of days in a month"},
           {daily(R"("frequency":"monthly","everyX":1,"weeksOfMonth":[2])"), "3 1 - 1", "",
            "week of the month"},
           {daily(R"("frequency":"yearly","everyX":1)"), "4 1 - 1", "", "any one day"},
           {daily(R"("checklist":[{"text":"a"},{"text":"b"}],"value":3)"), "0 - - 2", "",
            "values and streaks"},
           // Half past one is before the day's start; a day not done is told at the next login.
           {daily(
                R"("history":[null,{"date":1709771400000,"value":1,"completed":true,"isDue":true},)"
                R"({"date":1709884800000,"completed":false,"isDue":true},)"
                R"({"date":1709625600000,"completed":false,"isDue":false},)"
                R"({"date":1704067200000,"value":2}])"),
            "0 - - 1", " 306=1/10 307=7/0", "1 rows of its history"}}) {
    expect(readHabitica, one);
  }
  const auto weekly = readHabitica(
      daily(R"("frequency":"weekly","everyX":1,"repeat":{"t":true,"su":true},"reminders":)"
            R"([{"time":"2024-03-01T06:30:00.000Z"},{"time":"never"}])"),
      berlin(), importNow());
  EXPECT_EQ(weekly->backup.tasks.front().daysOfWeek->rawValue, 1 + 4);
  EXPECT_EQ(remindersOf(weekly->backup.tasks.front()), "7:30/127 ");
}

TEST(HabiticaReader, ReadsHabits) {
  const auto read = readHabitica(
      R"({"preferences":{"timezoneOffset":300},"tags":[{}],"tasks":{"habits":[{"_id":"1","text":)"
      R"("Eat well","up":true,"down":true,"history":[{"date":1709780400000,"scoredUp":2,)"
      R"("scoredDown":1},{"date":1709784000000,"scoredUp":1,"scoredDown":0},{"date":1,"value":3}]},)"
      R"({"_id":"2","text":"Smoke","up":false,"down":true},{"text":"x"}],"todos":[{},{}]}})",
      berlin(), importNow());
  const auto& tasks = read->backup.tasks;
  ASSERT_EQ(tasks.size(), 3U);
  EXPECT_EQ(*tasks[0].title + logOf(tasks[0]), "Eat well (+) 306=1/30") << "west of here";
  EXPECT_EQ(*tasks[1].title + logOf(tasks[1]), "Eat well (-) 306=7/10");
  EXPECT_TRUE(tasks[1].negativeTask && tasks[2].negativeTask);
  EXPECT_NE(tasks[0].uniqueId, tasks[1].uniqueId);
  for (const char* decision : {"became two tasks", "2 to-dos", "1 tags", "without identifier"}) {
    EXPECT_THAT(decisionsOf(*read), HasSubstr(decision));
  }
}

std::string habit(const std::string& members) {
  return R"({"habits":[{"name":"Read","start_date":19780,)" + members + "}]}";
}

TEST(MhabitReader, ReadsHabits) {
  for (const Case& one : std::initializer_list<Case>{
           {habit(R"("freq_type":1,"freq_custom":"[3]")"), "1 3 - 1", ""},
           {habit(R"("freq_type":1,"freq_custom":"[7]","status":3)"), "0 - - 1", "A"},
           {habit(R"("freq_type":2,"freq_custom":"[10]","status":2)"), "3 10 - 1", "T"},
           {habit(R"("freq_type":3,"freq_custom":"[1,3]")"), "2 - 3 1", ""},
           {habit(R"("freq_type":3,"freq_custom":"[1,")"), "0 - - 1", "",
            "frequency can't be read"},
           {habit(R"("daily_goal":4,"daily_goal_unit":"pages","records":[)"
                  R"({"record_date":19789,"record_type":1,"record_value":4},)"
                  R"({"record_date":19788,"record_type":1,"record_value":2.5,"reason":"late"},)"
                  R"({"record_date":19787,"record_type":1,"record_value":0},)"
                  R"({"record_date":19786,"record_type":2},{"record_date":-1,"record_type":1}])"),
            "0 - - 4", " 304=3/0 305=7/0 306=6/25 307=1/40", "1 records can't"},
           {habit(R"("type":2,"daily_goal":0,"daily_goal_extra":2,"records":[)"
                  R"({"record_date":19789,"record_type":1,"record_value":3},)"
                  R"({"record_date":19788,"record_type":1,"record_value":2}])"),
            "0 - - 2", " 306=8/20 307=7/30"}}) {
    expect(readMhabit, one);
  }
  const auto reminders = [](const char* extra) {
    const auto read = readMhabit(habit(R"("reminder":"{\"type\":)" + std::string(extra) +
                                       R"(,\"time\":{\"hour\":7,\"minute\":5}}")"),
                                 berlin(), importNow());
    return remindersOf(read->backup.tasks.front());
  };
  EXPECT_EQ(reminders("2"), "7:5/127 ");
  EXPECT_EQ(reminders(R"(3,\"extra\":[1,7])"), "7:5/3 ");
  EXPECT_EQ(reminders("0"), "");
  EXPECT_EQ(reminders("1"), "");
}

std::string recurring(const std::string& recur) {
  return R"({"uuid":"p","description":"Read","status":"recurring","entry":"20240101T100000Z",)"
         R"("due":"20240304T230000Z","recur":")" +
         recur + "\"}";
}

TEST(TaskwarriorReader, ReadsRecurrences) {
  for (const auto& [text, wanted] :
       std::initializer_list<std::pair<const char*, const char*>>{{"daily", "0 - - 1"},
                                                                  {"weekdays", "0 - - 1"},
                                                                  {"weekly", "0 - - 1"},
                                                                  {"2wks", "2 - 14 1"},
                                                                  {"biweekly", "2 - 14 1"},
                                                                  {"3d", "2 - 3 1"},
                                                                  {"P3D", "2 - 3 1"},
                                                                  {"P1M", "3 1 - 1"},
                                                                  {"monthly", "3 1 - 1"},
                                                                  {"quarterly", "2 - 91 1"},
                                                                  {"P1Y", "4 1 - 1"},
                                                                  {"PT12H", "0 - - 1"},
                                                                  {"whenever", "0 - - 1"}}) {
    expect(readTaskwarrior, {recurring(text), wanted, ""});
  }
  const auto weekly = readTaskwarrior(recurring("weekly"), berlin(), importNow());
  EXPECT_EQ(weekly->backup.tasks.front().daysOfWeek, DaysOfWeek::tuesday) << "in the local zone";
}

TEST(TaskwarriorReader, ReadsChildren) {
  const std::string parent =
      R"({"uuid":"p","description":"Read","status":"recurring","recur":"daily","project":"Mind",)"
      R"("tags":["x"],"annotations":[{"entry":"20240305T100000Z","description":"hard"}]})";
  const std::string children =
      R"({"uuid":"c1","description":"Read","status":"completed","parent":"p","due":"20240305T230000Z"},)"
      R"({"uuid":"c2","description":"Read","status":"deleted","parent":"p","due":"20240304T230000Z"},)"
      R"({"uuid":"c3","description":"Read","status":"pending","parent":"p","due":"20240306T230000Z"},)"
      R"({"uuid":"c4","description":"Gone","status":"completed","parent":"q","recur":"weekly",)"
      R"("due":"20240305T120000Z"},{"uuid":"s","description":"Once","status":"pending"})";
  std::string lines = parent + "," + children;
  for (std::size_t at = 0; (at = lines.find("},{", at)) != std::string::npos;) lines[at + 1] = '\n';
  for (const std::string& json : {"[" + parent + "," + children + "]", lines}) {
    const auto read = readTaskwarrior(json, berlin(), importNow());
    ASSERT_TRUE(read) << json;
    const auto& tasks = read->backup.tasks;
    ASSERT_EQ(tasks.size(), 2U);
    EXPECT_EQ(logOf(tasks[0]), " 305=3/0 306=1/10");
    EXPECT_EQ(notesOf(tasks[0]), "305:hard;");
    EXPECT_EQ(*tasks[1].title + logOf(tasks[1]), "GoneA 305=1/10");
    EXPECT_EQ(read->backup.categories->front().title, "Mind");
    for (const char* decision : {"tags left out", "1 tasks that do not", "its children alone"}) {
      EXPECT_THAT(decisionsOf(*read), HasSubstr(decision));
    }
  }
}

TEST(JSONReaders, RefuseOtherDocuments) {
  for (const Read read : {readHabitica, readMhabit, readTaskwarrior}) {
    for (const char* json : {"", "5", "{", "\"x\"", "[1", R"({"tasks":[}])"}) {
      EXPECT_FALSE(read(json, berlin(), importNow())) << json;
    }
  }
  EXPECT_FALSE(readHabitica(R"({"tasks":[]})", berlin(), importNow()));
  EXPECT_FALSE(readMhabit("[]", berlin(), importNow()));
}

}  // namespace
}  // namespace velloro
