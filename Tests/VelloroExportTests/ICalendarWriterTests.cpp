#include "VelloroExport/ICalendarWriter.h"

#include <sstream>
#include <string>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::HasSubstr;

const Date now = Date::fromISO8601("2024-03-08T11:00:00Z").value();
const UniqueID id = UniqueID::fromString("00000000-0000-4000-8000-000000000001").value();

/// The lines without folds; each physical line is tested on the way.
std::string unfolded(const std::string& text) {
  std::istringstream lines(text);
  std::string all;
  for (std::string line; std::getline(lines, line);) {
    EXPECT_TRUE(line.ends_with('\r')) << line;
    line.pop_back();
    EXPECT_LE(line.size(), 75U) << line;
    if (line.starts_with(' ')) {
      EXPECT_NE(static_cast<unsigned char>(line[1]) & 0xC0, 0x80) << "within a character";
      all.pop_back();
      line.erase(0, 1);
    } else {
      EXPECT_THAT(line, testing::ContainsRegex("^[A-Z-]+[;:]"));
    }
    all += line + "\n";
  }
  return all;
}

/// Properties of the events alone, without what is the same for all.
std::string events(const ICalendar& of) {
  std::istringstream lines(unfolded(of.text));
  std::string all, depth;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("BEGIN:")) depth += line.substr(6) + "/";
    if (line.starts_with("END:")) {
      EXPECT_TRUE(depth.ends_with(line.substr(4) + "/")) << line;
      depth.erase(depth.size() - line.size() + 3);
    }
    for (const char* kept : {"UID:", "DTSTART", "RRULE:", "TRIGGER:"}) {
      if (line.starts_with(kept)) all += line + " ";
    }
  }
  EXPECT_EQ(depth, "");
  return all;
}

TaskReminder at(std::int64_t hour, std::int64_t minute, EnumSet<DayOfWeek> days = everyDay()) {
  return {.uniqueId = UniqueID::create(),
          .trigger = TaskReminder::Trigger::fromTimeOfDay({.h = hour, .m = minute}),
          .daysOfWeek = days};
}

VelloroJSONBackupTask task(const std::vector<TaskReminder>& reminders,
                           DaysOfWeek days = DaysOfWeek::everyDay) {
  return {.uniqueId = id,
          .title = "Read",
          .createdTimestamp = Date::fromISO8601("2024-03-05T23:30:00Z").value(),  // Wednesday
          .notificationSettings = codableNotificationSettings(
              {.reminderType = ReminderType::custom, .reminders = reminders}),
          .daysMode = DayMode::specificDaysOfWeek,
          .daysOfWeek = days};
}

TEST(ICalendar, SaysWhenATaskIsDue) {
  const std::string uid = "UID:00000000-0000-4000-8000-000000000001";
  const TimeZone berlin = TimeZone::fromIdentifier("Europe/Berlin").value();
  const DaysOfWeek weekend{DaysOfWeek::saturday, DaysOfWeek::sunday};
  auto muted = at(9, 0);
  muted.trigger.type = TaskReminder::TriggerType::timeOfDayMuted;
  VelloroJSONBackupTask interval = task({at(8, 0)});
  interval.daysMode = DayMode::dayInterval;
  interval.dayInterval = 3;
  VelloroJSONBackupTask doneLately = interval;
  doneLately.log = std::vector<VelloroJSONBackupTaskEntry>{
      {.entryType = TaskLogEntryType::completedManuallyFull, .entryDate = {2024, 3, 7}}};
  for (const auto& [given, startOfDay, wanted] :
       std::initializer_list<std::tuple<VelloroJSONBackupTask, HHMMSS, std::string>>{
           {task({}), {}, uid + "@velloro DTSTART;VALUE=DATE:20240306 RRULE:FREQ=DAILY "},
           {task({at(20, 30), at(8, 0), muted}),
            {},
            uid + "@velloro DTSTART:20240306T080000 RRULE:FREQ=DAILY TRIGGER:PT0S "
                  "TRIGGER:PT12H30M "},
           {task({at(8, 0, {DayOfWeek::sunday})}, weekend),
            {},
            uid + "-SA@velloro DTSTART;VALUE=DATE:20240309 RRULE:FREQ=WEEKLY;BYDAY=SA " + uid +
                "-SU@velloro DTSTART:20240310T080000 RRULE:FREQ=WEEKLY;BYDAY=SU TRIGGER:PT0S "},
           {task({at(1, 0)}, weekend),
            {.h = 4},
            uid + "@velloro DTSTART:20240310T010000 RRULE:FREQ=WEEKLY;BYDAY=MO,SU TRIGGER:PT0S "},
           {task({at(20, 0), at(1, 0)}, DaysOfWeek::sunday),
            {.h = 18},
            uid + "@velloro DTSTART:20240309T200000 RRULE:FREQ=WEEKLY;BYDAY=SA TRIGGER:PT0S "
                  "TRIGGER:PT5H "},
           {interval,
            {},
            uid + "@velloro DTSTART:20240308T080000 RRULE:FREQ=DAILY;INTERVAL=3 TRIGGER:PT0S "},
           {doneLately,
            {},
            uid + "@velloro DTSTART:20240310T080000 RRULE:FREQ=DAILY;INTERVAL=3 TRIGGER:PT0S "}}) {
    EXPECT_EQ(events(iCalendar({.timestamp = now, .tasks = {given}},
                               {.timeZone = berlin, .startsOfDay = {{id, startOfDay}}})),
              wanted);
  }
}

TEST(ICalendar, NamesWhatItLeavesOut) {
  for (const auto& [change, why] :
       std::initializer_list<std::pair<void (*)(VelloroJSONBackupTask&), const char*>>{
           {[](auto& task) { task.status = TaskStatus::archived; }, "not active"},
           {[](auto& task) { task.status = TaskStatus::paused; }, "paused"},
           {[](auto& task) { task.daysOfWeek = DaysOfWeek(); }, "on no day"},
           {[](auto& task) { task.daysMode = DayMode::numberOfDaysInWeek; }, "number of days"},
           {[](auto& task) { task.daysMode = DayMode::aggregateOverYear; }, "a total"}}) {
    auto changed = task({at(8, 0)});
    change(changed);
    const auto written = iCalendar({.timestamp = now, .tasks = {changed}}, {});
    EXPECT_EQ(events(written), "") << why;
    ASSERT_EQ(written.remarks.size(), 1U) << why;
    EXPECT_EQ(written.remarks.front().what, "\"Read\"");
    EXPECT_THAT(written.remarks.front().why, HasSubstr(why));
  }
}

TEST(ICalendar, EscapesAndFoldsTexts) {
  const UniqueID mind = UniqueID::create();
  auto given = task({});
  given.title = "a,b;c\\d\r\ne\x01";
  given.categoryIDs = std::set{mind};
  std::string umlauts;
  for (int i = 0; i < 100; ++i) umlauts += "ü";
  given.log = std::vector<VelloroJSONBackupTaskEntry>{
      {.entryType = TaskLogEntryType::completedManuallyFull, .entryDate = {2024, 3, 7}},
      {.entryType = TaskLogEntryType::completedManuallyFull, .entryDate = {2024, 3, 7}},
      {.entryType = TaskLogEntryType::skippedManuallyFull, .entryDate = {2024, 3, 6}}};
  given.notes =
      std::vector<VelloroJSONBackupNote>{{.date = YYYYMMDD{2024, 3, 7}, .content = {umlauts}}};
  const std::string text =
      unfolded(iCalendar({.timestamp = now,
                          .tasks = {given},
                          .categories = std::vector<VelloroJSONBackupCategory>{{mind, "x,y"}}},
                         {.withLog = true})
                   .text);
  EXPECT_THAT(text, HasSubstr("\nSUMMARY:a\\,b\\;c\\\\d\\ne\nCATEGORIES:x\\,y\nRRULE:"));
  EXPECT_THAT(text, HasSubstr("BEGIN:VJOURNAL\nUID:00000000-0000-4000-8000-000000000001-20240307@"
                              "velloro\nDTSTAMP:20240308T110000Z\nDTSTART;VALUE=DATE:20240307\n"));
  EXPECT_THAT(text, HasSubstr("\nDESCRIPTION:" + umlauts + "\n"));
  EXPECT_EQ(text.find("BEGIN:VJOURNAL"), text.rfind("BEGIN:VJOURNAL")) << "one for each done day";
  for (std::size_t length = 70; length < 160; ++length) {
    const std::string line = "X:" + std::string(length, 'x');
    EXPECT_EQ(unfolded(foldedLine(line)), line + "\n");
  }
}

}  // namespace
}  // namespace velloro
