#include "AppTests/Program.h"
#include "DataManager/DataManager.h"
#include "Foundation/Coding/JSON.h"
#include "Foundation/Coding/PropertyList.h"
#include "Foundation/Files/DefaultsSuite.h"
#include "Foundation/Files/NSFileManager.h"
#include "Settings/AppGroup.h"
#include "Support/TaskStore.h"
#include "Tasks/Requests/TaskFetchRequest.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/TaskNotificationRemindersEntity.h"
#include "Tasks/Rows/TaskNotificationSettingsEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"
#include "UserNotifications/UNUserNotificationCenter.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <tuple>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::AllOf;
using testing::HasSubstr;

/// A store of its own, seen at instants of March 2024 in Berlin.
class HostCommands : public testing::Test {
 protected:
  [[nodiscard]] ProgramResult at(const std::string& now, const std::string& arguments) const {
    return runProgram(arguments + here(now));
  }
  /// The JSON that a command answers.
  PropertyList answer(const std::string& now, const std::string& arguments) const {
    const auto result = at(now, arguments + " --json");
    EXPECT_EQ(result.exitCode, 0) << arguments << ": " << result.errors;
    return PropertyList::fromJSON(result.output);
  }
  [[nodiscard]] std::string status(const std::string& now, const std::string& task) const {
    const auto is = answer(now, "status '" + task + "'");
    return *is["status"].text() + " " + std::to_string(*is["streak"]["current"].integer()) + "/" +
           std::to_string(*is["streak"]["best"].integer());
  }
  /// The same, told no time.
  [[nodiscard]] std::string answerNow(const std::string& arguments) const {
    const auto result =
        runProgram(arguments + " --json --zone Europe/Berlin --store '" + folder_.string() + "'");
    EXPECT_EQ(result.exitCode, 0) << arguments << ": " << result.errors;
    return result.output;
  }
  /// Changes the store as another program does.
  void behindItsBack(const std::function<void(NSManagedObjectContext&)>& work,
                     const char* file = "Velloro-CloudKit.sqlite") const {
    const TaskStore store(
        NSPersistentStoreDescription::initWithURL(folder_ / "groups" / appGroupIdentifier / file));
    work(*store.viewContext());
    EXPECT_TRUE(store.viewContext()->save());
  }
  void refuses(const std::string& now, const std::string& arguments, const std::string& complaint) {
    const auto result = at(now, arguments);
    EXPECT_NE(result.exitCode, 0) << arguments;
    EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1) << result.errors;
    EXPECT_THAT(result.errors, HasSubstr(complaint)) << arguments;
  }

  [[nodiscard]] std::string here(const std::string& now) const {
    return " --zone Europe/Berlin --locale en_US --store '" + folder_.string() +
           "' --now 2024-03-" + now + "+01:00";
  }

  const VirtualEnvironment environment_;
  const std::filesystem::path folder_ = environment_.directories().temporary / "store";
};

TEST_F(HostCommands, KeepStreaksFromDayToDay) {
  const auto task = answer("04T08:00:00", "task add Read --days mon,tue,thu,fri --icon book");
  EXPECT_EQ(*task["title"].text(), "Read");
  EXPECT_EQ(status("04T08:00:00", "Read"), "i_mwoi 0/0");
  EXPECT_EQ(at("04T09:00:00", "log add Read").exitCode, 0);
  EXPECT_EQ(status("04T10:00:00", "Read"), "c 1/1");
  EXPECT_EQ(at("05T09:00:00", "log add read").exitCode, 0);
  EXPECT_EQ(status("06T12:00:00", "Read"), "i_swi 2/2") << "no Wednesday is due";
  EXPECT_EQ(status("07T12:00:00", "Read"), "i_mwoi 2/2") << "the Wednesday was no miss";
  EXPECT_EQ(status("08T12:00:00", "Read"), "i_mwoi 0/2") << "the Thursday was one";
  EXPECT_EQ(at("08T12:00:00", "log add Read --date 20240307").exitCode, 0);
  EXPECT_EQ(status("08T13:00:00", "Read"), "i_mwoi 3/3") << "what is filled in counts";
  EXPECT_EQ(at("08T14:00:00", "log undo Read --date 20240307").exitCode, 0);
  EXPECT_EQ(status("08T15:00:00", "Read"), "i_mwoi 0/2");

  const auto history = answer("08T15:00:00", "history Read --from 20240303");
  std::string statuses;
  for (const auto& period : *history["periods"].array()) statuses += *period["status"].text() + " ";
  EXPECT_EQ(statuses, "p c c s m cp ");
  EXPECT_THAT(at("08T15:00:00", "history Read").output, HasSubstr("2024-03"));
  const auto log = answer("08T15:00:00", "log list Read");
  EXPECT_EQ(log.array()->size(), 4U) << "two completions, a skip, a miss";
}

TEST_F(HostCommands, TellWhatAReminderSaysAndMakeIt) {
  answer("04T08:00:00", "task add Swim --times 3 --per week");
  answer("04T09:00:00", "log add Swim");
  // Thursday of a week that begins on Sunday: one of three is done, two days are left after it.
  const auto words = answer("07T12:00:00", "reminder words Swim --seed 1");
  EXPECT_EQ(*words["period"]["type"].text(), "day");
  std::set<std::string> kinds;
  std::string first;
  for (const PropertyList& each : *words["motivations"].array()) {
    kinds.insert(*each["kind"].text());
    EXPECT_NE(each["text"].isNull(), each["why"].isNull());
    if (first.empty() && !each["text"].isNull()) first = *each["kind"].text();
  }
  EXPECT_THAT(kinds, testing::ElementsAre("extendBest", "keepAliveWeekProgress", "reminder",
                                          "weeklyTarget"));
  EXPECT_EQ(*words["motivations"].array()->back()["kind"].text(), "reminder");
  EXPECT_EQ(*words["picked"].text(), first);
  const auto weekly = std::ranges::find_if(*words["motivations"].array(), [](const auto& each) {
    return *each["kind"].text() == "weeklyTarget";
  });
  EXPECT_EQ((*weekly)["parameters"].json(),
            R"({"completionsComplete":"1","completionsTarget":"3"})");
  EXPECT_THAT(*(*weekly)["text"].text(), HasSubstr("1 of 3"));

  const auto made = [&](const std::string& options) {
    return answer("07T12:00:00", "notification make Swim " + options);
  };
  const std::string id = *words["task"].text();
  EXPECT_EQ(*made("--date 20240309")["identifier"].text(), "r9." + id + ".0");
  EXPECT_EQ(*made("--date 20240309")["trigger"].text(), "2024-03-08T23:00:00Z");
  EXPECT_TRUE(made("--kind badge")["trigger"].isNull());
  EXPECT_EQ(made("--seed 1"), made("--seed 1"));
  EXPECT_EQ(*made("--kind completion")["categoryIdentifier"].text(), "nm.c.tc");
  EXPECT_EQ(made("--kind badge")["badge"].integer(), 1);
  refuses("07T12:00:00", "notification make Swim --kind progress", "no timer");
  refuses("07T12:00:00", "notification make Swim --kind reminders", "did you mean \"reminder\"");
  refuses("07T12:00:00", "reminder words Swim --seed -1", "--seed");
}

/// The reminders of a task as "time days" of each, with an "m" before a muted one.
std::vector<std::string> remindersOf(const PropertyList& report) {
  std::vector<std::string> texts;
  for (const PropertyList& each : *report["reminders"].array()) {
    std::string text = each["muted"].isNull() ? "" : "m ";
    text += each["time"].isNull() ? *each["type"].text() : *each["time"].text();
    for (const PropertyList& day : *each["days"].array()) text += " " + day.text()->substr(0, 2);
    texts.push_back(text);
  }
  return texts;
}

TEST_F(HostCommands, MakeRemindersTheUsersOwn) {
  const std::string now = "07T12:00:00";
  const auto at = [&](const std::string& command) { return answer(now, "reminder " + command); };
  const std::string daily = " mo tu we th fr sa su";
  const std::string learned = "18:10:00" + daily;
  answer(now, "task add Read");
  const auto automatic = at("list Read");
  EXPECT_EQ(*automatic["mode"].text(), "automatic");
  EXPECT_THAT(remindersOf(automatic), testing::ElementsAre(learned));
  EXPECT_EQ(*automatic["reminders"].array()->front()["source"].text(), "default");

  const auto added = at("add Read 07:30 --days Mon,weekends --sound ping");
  EXPECT_EQ(*added["switchedFrom"].text(), "automatic");
  EXPECT_EQ(*added["kept"].array()->front()["time"].text(), "18:10:00");
  EXPECT_EQ(*added["added"]["sound"].text(), "ping");
  const std::string own = "07:30:00 mo sa su";
  EXPECT_THAT(remindersOf(added["now"]), testing::ElementsAre(own, learned));
  EXPECT_EQ(at("list Read"), added["now"]) << "it is stored";
  const auto again = at("add Read 07:30:00 --days sat,sun,monday");
  EXPECT_EQ(again["added"], added["added"]) << "it is there, and keeps its sound";
  EXPECT_TRUE(again["switchedFrom"].isNull());
  EXPECT_EQ(again["now"], added["now"]);
  EXPECT_THAT(this->at(now, "reminder list Read").output,
              AllOf(HasSubstr("Read: custom\n"), HasSubstr("07:30:00 mon sat sun"),
                    HasSubstr("sound ping\n")));

  // What another program has stored stays, even if it makes no sense here.
  using Reminder = TaskNotificationRemindersEntity;
  behindItsBack([](NSManagedObjectContext& context) {
    const auto tasks = context.fetch<TaskEntity>(TaskFetchRequest{}.fetchRequest()).value();
    const auto row = Reminder::create(context);
    row->setReminder({.uniqueId = {},
                      .trigger = TaskReminder::Trigger::fromDuration(
                          TaskReminder::TriggerType::durationBeforeFinish, 60),
                      .daysOfWeek = everyDay()},
                     UniqueID::create());
    row->setStored(Reminder::sound, "gong");
    tasks.front()->add(TaskAttributes::taskNotificationReminders, row);
    const auto settings = tasks.front()->value(TaskAttributes::taskNotificationSettings);
    settings->setStored(TaskNotificationSettingsEntity::soundReminder, "gong");
    settings->setStored(TaskNotificationSettingsEntity::badgeMode, "sometimes");
  });
  const std::string id = added["added"]["id"].text()->substr(0, 8);
  EXPECT_THAT(remindersOf(at("remove Read " + id)["now"]),
              testing::ElementsAre(learned, "dbf" + daily));
  EXPECT_THAT(remindersOf(at("remove Read 18:10")["now"]), testing::ElementsAre("dbf" + daily));
  EXPECT_TRUE(at("mode Read none --time-sensitive on")["now"]["timeSensitive"].boolean());
  EXPECT_EQ(*at("mode Read AUTOMATIC")["switchedFrom"].text(), "none");
  EXPECT_THAT(remindersOf(at("mode Read custom")["now"]),
              testing::ElementsAre(learned, "dbf" + daily));
  behindItsBack([](NSManagedObjectContext& context) {
    const auto tasks = context.fetch<TaskEntity>(TaskFetchRequest{}.fetchRequest()).value();
    const auto settings = tasks.front()->value(TaskAttributes::taskNotificationSettings);
    EXPECT_EQ(*settings->text(TaskNotificationSettingsEntity::soundReminder), "gong");
    EXPECT_EQ(*settings->text(TaskNotificationSettingsEntity::badgeMode), "sometimes");
    for (const auto& row : tasks.front()->value(TaskAttributes::taskNotificationReminders)) {
      const bool isOthers = !row->value(Reminder::timeOfDay);
      EXPECT_EQ(row->text(Reminder::sound) != nullptr, isOthers);
    }
  });

  at("mode Read automatic");
  EXPECT_EQ(*at("remove Read 18:10")["switchedFrom"].text(), "automatic") << "it would come again";
  for (const auto& [command, complaint] :
       std::initializer_list<std::pair<const char*, const char*>>{
           {"add Read 25:00", "TIME \"25:00\": not a time"},
           {"add Read 7.30", "not a time"},
           {"add Read +1x", "write a time from now on"},
           {"add Read +0s", "write a time from now on"},
           {"add Read +24h", "less than a day"},
           {"add Read 07:30 --days mon,hexday", "--days \"hexday\": not a weekday"},
           {"add Read 07:30 --days ''", "--days \"\": not a weekday"},
           {"add Read 07:30 --sound pin", "did you mean \"ping\"?"},
           {"remove Read 07:31", "REMINDER \"07:31\": not a reminder"},
           {"remove Read zz", "REMINDER \"zz\": not a reminder"},
           {"mode Read automatc", "did you mean \"automatic\"?"},
           {"mode Read none --time-sensitive maybe", "write on or off"}}) {
    refuses(now, std::string("reminder ") + command, complaint);
  }
  at("add Read 07:30 --days mon");
  at("add Read 07:30 --days tue");
  refuses(now, "reminder remove Read 07:30", "write the id");
}

TEST_F(HostCommands, RemindFromNowOnAtThatMoment) {
  struct Case {
    const char* now;
    const char* arguments;
    const char* reminder;
  };
  constexpr Case cases[] = {
      {"2024-03-07T12:00:30+01:00", "+90s --days thu", "12:02:00 th"},
      {"2024-03-10T23:59:30+01:00", "+1m --days sun", "00:00:30 su"},
      {"2024-03-11T03:59:30+01:00", "+1m --days sun", "04:00:30 su"},
      {"2024-03-11T04:59:30+01:00", "+1m --days sun", "05:00:30 mo su"},
      {"2024-03-31T01:59:30+01:00", "+1h1m --days sat", "04:00:30 sa"},
      {"2024-10-27T02:30:00+02:00", "+30m --days sat", nullptr}};  // the second 02:00
  for (const auto& [now, arguments, reminder] : cases) {
    const std::string there =
        "--zone Asia/Tokyo --store '" + (folder_ / now).string() + "' --now " + now + " ";
    for (const char* command : {"task add Read --zone Europe/Berlin --start-of-day 05:00:00",
                                "reminder mode Read none"}) {
      EXPECT_EQ(runProgram(there + command).exitCode, 0) << now;
    }
    const auto result = runProgram(there + "reminder add Read --json " + arguments);
    EXPECT_EQ(result.exitCode, reminder == nullptr ? 2 : 0) << now << result.errors;
    if (reminder == nullptr) continue;
    EXPECT_THAT(remindersOf(PropertyList::fromJSON(result.output)["now"]),
                testing::ElementsAre(reminder))
        << now;
  }
}

TEST_F(HostCommands, RemindOnceAndListWhatIsPlanned) {
  answer("07T12:00:00", "task add Read");
  const auto reminder = answer("07T12:00:00", "remind Read --at 2024-03-07T18:00:00+01:00");
  EXPECT_EQ(*reminder["date"].text(), "2024-03-07T17:00:00Z");
  EXPECT_EQ(reminder["taskId"], answer("07T12:00:00", "task show Read")["uniqueId"]);
  const auto kept = platform::NSFileManager::contents(folder_ / "preferences" /
                                                      (std::string(appGroupIdentifier) + ".json"));
  EXPECT_THAT(kept.value(), HasSubstr("SiriReminders"));
  refuses("07T12:00:00", "remind Read --at 2024-03-07T12:00:00+01:00", "has passed");
  refuses("07T12:00:00", "remind Read --at noon", "--at \"noon\": not an instant");
  answer("07T12:00:00", "task archive Read");
  refuses("07T12:00:00", "remind Read --at 2024-03-07T18:00:00+01:00", "is archived");

  EXPECT_THAT(answer("07T12:00:00", "notification list"), PropertyList(PropertyList::Array{}));
  UNUserNotificationCenter center(folder_ / "groups/velloro.app");
  center.requestAuthorizationWithOptions(UNAuthorizationOptions::alert);
  const auto request = [](const char* id, int day) {
    return UNNotificationRequest{
        .identifier = id,
        .content = {.title = id, .body = "x\ny", .badge = day},
        .trigger = UNCalendarNotificationTrigger::triggerWithDateMatchingComponents(
            {.year = 2024, .month = 3, .day = day, .hour = 7})};
  };
  for (const auto& [id, day] : {std::pair("b", 9), {"a", 8}, {"c", 10}}) {
    center.addNotificationRequest(request(id, day));
  }
  center.flush();
  const auto listed = answer("07T12:00:00", "notification list");
  ASSERT_EQ(listed.array()->size(), 3U);
  EXPECT_EQ(*(*listed.array())[0]["trigger"].text(), "2024-03-08T06:00:00Z");
  EXPECT_THAT(
      at("07T12:00:00", "notification list").output,
      AllOf(HasSubstr("2024-03-08 07:00:00 +01:00  a  a: x\\ny\n2024-03-09"), HasSubstr("  c  ")));
  EXPECT_EQ(at("07T12:00:00", "notification list --delivered").output, "No notifications.\n");
}

TEST_F(HostCommands, ShowWhatAWriterWouldFindAndSaveNothing) {
  const std::pair<const char*, const char*> tasks[] = {
      {"Read", ""},
      {"Tea", "--negative"},
      {"Call", "--mode numberOfDaysInMonth --times 2"},
      {"Sweets", "--mode numberOfDaysInWeek --times 6 --negative"},
      {"Plants", "--interval 3 --negative"},
      {"Swim", "--mode aggregateOverFortnight --first-day-of-week monday"},
      {"Walk", "--type hk_stand --target 12"}};
  for (const auto& [task, options] : tasks) {
    answer("04T08:00:00", std::string("task add ") + task + " " + options);
    answer("04T09:00:00", std::string("log add ") + task);
  }
  const std::string now = "26T12:00:00";
  const auto saves = [&] { return *answer(now, "store stats")["saves"].integer(); };
  const auto seen = [&](const std::string& task) {
    std::string all;
    for (const char* command : {"status", "log list", "history", "notification make --seed 1"}) {
      const bool isJson = std::string_view(command).starts_with("notification");
      const std::string json = isJson ? "" : " --json";
      const auto result = at(now, command + (" " + task) + json);
      EXPECT_EQ(result.exitCode, 0) << result.errors;
      all += result.output;
    }
    return all;
  };
  const auto before = saves();
  EXPECT_EQ(status(now, "Read"), "i_mwoi 0/1");
  std::string read;
  for (const auto& [task, options] : tasks) read += seen(task);
  const std::string table = at(now, "status").output;
  EXPECT_EQ(saves(), before);
  EXPECT_EQ(status("04T10:00:00", "Read"), "c 1/1");
  for (const auto& [task, options] : tasks) {
    answer(now, std::string("task edit ") + task + " --title " + task);
  }
  EXPECT_GT(saves(), before);
  std::string written;
  for (const auto& [task, options] : tasks) written += seen(task);
  EXPECT_EQ(written, read);
  EXPECT_EQ(at(now, "status").output, table);
}

TEST_F(HostCommands, TakeBackWhatAClockThatWasAheadClosed) {
  (void)answerNow("task add Read");
  const std::string before = answerNow("status Read");
  const auto later = std::to_string(
      1 + static_cast<int>(std::chrono::year_month_day(std::chrono::floor<std::chrono::days>(
                                                           std::chrono::system_clock::now()))
                               .year()));
  const std::string ahead = " --now " + later + "-12-31T12:00:00Z";
  (void)answerNow("task edit Read --title Read" + ahead);
  EXPECT_EQ(answerNow("status Read"), before) << "what is read leaves the closings out";
  EXPECT_EQ(answerNow("log list Read"), "[]\n");
  EXPECT_THAT(answerNow("log list Read" + ahead), HasSubstr("missed_auto"));
  (void)answerNow("log add Read --now " + later + "-12-31T13:00:00Z");
  EXPECT_THAT(answerNow("log list Read"), HasSubstr("missed_auto")) << "is the clock wrong now?";
  (void)answerNow("log undo Read" + ahead);
  (void)answerNow("task edit Read --title Read");
  EXPECT_EQ(answerNow("status Read"), before);
  EXPECT_THAT(answerNow("store stats"), HasSubstr(R"({"name":"TaskLogEntry","rows":0})"));
}

TEST_F(HostCommands, LeaveWhatAHealthReaderHasStored) {
  answer("04T08:00:00", "task add Stand --type hk_stand --target 12");
  answer("04T09:00:00", "log add Stand --progress 5");
  using Row = TaskTemporalDataEntity;
  const auto kept = [](NSManagedObjectContext& context) {
    return context.fetch<Row>(NSFetchRequest(std::string(Row::entityName()))).value().front();
  };
  behindItsBack([&](NSManagedObjectContext& context) {
    const auto row = kept(context);
    EXPECT_EQ(row->value(Row::progress), 5);
    EXPECT_EQ(row->value(Row::lastUpdated), Date::fromISO8601("2024-03-04T08:00:00Z"));
    row->setValue(Row::progress, 7.0);
  });
  const auto next = answer("04T10:00:00", "log add Stand");
  EXPECT_EQ(*next["progress"].real(), 5) << "what is left by its title";
  EXPECT_EQ(*next["type"].text(), "completed_manually");
  behindItsBack([&](auto& context) { EXPECT_EQ(kept(context)->value(Row::progress), 7); });
}

TEST_F(HostCommands, LeaveAPausedTaskAlone) {
  answer("04T08:00:00", "task add Read");
  answer("04T09:00:00", "log add Read");
  answer("05T09:00:00", "task pause Read");
  EXPECT_EQ(status("09T09:00:00", "Read"), "i_swi 1/1");
  answer("10T09:00:00", "task resume Read");
  EXPECT_EQ(status("10T10:00:00", "Read"), "i_mwoi 1/1");
  EXPECT_EQ(status("11T10:00:00", "Read"), "i_mwoi 0/1");

  answer("11T11:00:00", "log add Read");
  answer("11T12:00:00", "task delete Read");
  answer("20T09:00:00", "task resume Read");
  EXPECT_EQ(status("20T10:00:00", "Read"), "i_mwoi 1/1") << "nothing is missed in the trash";
}

TEST_F(HostCommands, CountStepsAndHabitsToAvoid) {
  answer("04T08:00:00",
         "task add Water --type hk_water --target 8 --unit cups_us --partial 4 --data-source curr");
  EXPECT_EQ(*answer("04T09:00:00", "log add Water")["type"].text(), "completed_manually_partial");
  const auto progress = answer("04T10:00:00", "status Water")["progress"];
  EXPECT_EQ(*progress["currentValue"].real(), 2);
  EXPECT_EQ(*progress["numCompletions"].integer(), 1);
  EXPECT_EQ(*answer("04T09:00:00", "log add Water")["progressTotal"].real(), 4);
  EXPECT_EQ(*answer("04T09:00:00", "log undo Water")["progressTotal"].real(), 4)
      << "at one instant, too, one comes after the other";
  EXPECT_EQ(*answer("04T11:00:00", "log add Water --progress 6")["type"].text(),
            "completed_manually");
  EXPECT_EQ(status("04T12:00:00", "Water"), "c 1/1");

  answer("04T08:00:00", "task add Swim --mode aggregateOverWeek --partial 3");
  answer("06T09:00:00", "log add Swim");
  answer("06T09:00:00", "log add Swim --date 20240304");
  EXPECT_EQ(*answer("06T09:00:00", "log add Swim")["type"].text(), "completed_manually")
      << "what was entered later for an earlier day counts";

  answer("04T08:00:00", "task add 'No sweets' --negative");
  EXPECT_EQ(status("04T12:00:00", "No sweets"), "nc_mwoi 1/1");
  EXPECT_EQ(status("06T12:00:00", "No sweets"), "nc_mwoi 3/3") << "two clean days, and today";
  EXPECT_EQ(*answer("06T13:00:00", "log add 'No sweets'")["type"].text(), "missed_manually");
  EXPECT_EQ(status("06T14:00:00", "No sweets"), "nm 0/2");
}

TEST_F(HostCommands, MakeAReminderThatCanBeShown) {
  answer("04T08:00:00", "task add 'Drink tea' --icon tea --partial 3");
  answer("04T08:00:00", "settings set selectedTheme.0 royalPurple.black");
  answer("04T09:00:00", "log add 'Drink tea'");
  const auto file = environment_.directories().temporary / "made.json";
  EXPECT_EQ(at("04T10:00:00", "notification make 'Drink tea' > '" + file.string() + "'").exitCode,
            0);
  const auto shown = answer("04T10:00:00", "notification show '" + file.string() + "'");
  EXPECT_FALSE(*shown["fallback"].boolean());
  EXPECT_THAT(at("04T10:00:00", "notification make 'Drink tea'").output,
              AllOf(HasSubstr("royalPurple"), HasSubstr("black")));
  EXPECT_EQ(*shown["title"].text(), "Drink tea");
  EXPECT_NEAR(*shown["ring"]["progress"].real(), 1.0 / 3, 1e-9);
}

TEST_F(HostCommands, NameWhatTheyCannotDo) {
  answer("04T08:00:00", "task add Read");
  answer("04T08:00:00", "task add Run");
  const std::string now = "04T09:00:00";
  refuses(now, "log add Reed", "no task is called \"Reed\"; did you mean \"Read\"?");
  refuses(now, "log add Read finished", "TYPE \"finished\": not a type of entry");
  answer(now, "task edit Run --negative");
  refuses(now, "log add Run skip", "TYPE \"skip\": a habit to avoid can't be skipped");
  refuses(now, "log add Read --date 20240305", "--date \"20240305\": in the future");
  refuses(now, "log add Read --date 19691231", "--date \"19691231\": lies before 1970");
  for (const auto& [command, exitCode] : {std::pair("log add Read", 1), std::pair("status", 0)}) {
    const auto late = runProgram(std::string(command) + " --now 9999-03-07T12:00:00Z --store '" +
                                 folder_.string() + "'");
    EXPECT_EQ(late.exitCode, exitCode) << command;
    EXPECT_THAT(late.errors, HasSubstr("more than 150 years before 9999-03-07")) << command;
  }
  refuses(now, "log undo Read", "nothing to undo");
  refuses(now, "history Read --from 20240405", "after --to");
  refuses(now, "demo", "has tasks already");
  EXPECT_EQ(answer(now, "task list").array()->size(), 2U) << "what was refused left nothing";
}

TEST_F(HostCommands, RefuseTasksThatCannotBe) {
  answer("04T08:00:00", "task add Read --interval 2");
  answer("04T08:00:00", "task add Swim --mode aggregateOverWeek --partial 3");
  const std::pair<const char*, const char*> cases[] = {
      {"add Plants --interval 31", "31 days between completions; the nearest is 30"},
      {"add Often --times 8", "8 days per period; the nearest is 7"},
      {"add Steps --partial 0", "0 steps to a completion; the nearest is 1"},
      {"add Often --every 5w", "35 days between completions; the nearest is 30"},
      {"add Often --every 0d", "--every \"0d\": an interval is at least one day"},
      {"add Often --every Weekday,sat",
       "--every \"Weekday,sat\": \"Weekday\" is not a day of the week"},
      {"add Often --every \"$(printf '%0100d' 1)\"",
       "0000…\": not a day of the week; write days as"},
      {"add Often --every 2d --partial 2 --first-day-of-week mon", "with --every \"2d\""},
      {"add Often --page 4", "--page \"4\": out of range; write 0 to 3"},
      {"edit Swim --type hk_water --total 8x --per week", "--total \"8x\": not a number"},
      {"add Weird --color red", "--color \"red\": not a colour"},
      {"add Walk --days ''", "--days \"\": no days; write some as mon,wed,fri"},
      {"add Walk --first-day-of-week mon", "\"mon\": has no meaning for how"},
      {"edit Read --first-day-of-week mon", "\"mon\": has no meaning for how"},
      {"add Walk --times 2 --interval 3", "--times \"2\": has no meaning with --interval \"3\""},
      {"add Swim --type hk_swim_distance --unit cups_us", "--unit \"cups_us\": not a unit of"},
      {"add Play --type timer --target 5 --unit km", "--unit \"km\": not a unit of timer; write"},
      {"add Water --type hk_water --target 0", "--target \"0\": not above 0"},
      {"add Sleep --type hk_sleep --target 25", "--target \"25\": more than a day has room for"},
      {"add Play --timer 86400 --partial 2", "--timer \"86400\": more than a day has room for"},
      {"edit Swim --type hk_activity", "such a task can't recur with one total over a week"},
      {"edit Read --title ''", "TITLE \"\": empty"},
      {"edit Read --title \"$(printf 'a\\nb')\"",
       R"(TITLE "a\nb": has line breaks or other control)"},
      {"add \"$(printf 'a\\302\\233')\"", R"(TITLE "a\u009b": has line breaks or other control)"},
      {"add \"$(printf '\\377')\"", R"(TITLE "\xff": not a text in UTF-8)"},
      {"add \"$(printf ' \\342\\200\\213')\"", "has nothing that can be seen"},
      {"add \"$(printf '%0201d' 1)\"", "longer than 200 characters"}};
  for (const auto& [arguments, complaint] : cases) {
    expectRefusal("task " + (arguments + here("04T09:00:00")), complaint);
  }
  EXPECT_EQ(answer("04T09:00:00", "task list").array()->size(), 2U) << "nothing was left";
}

TEST_F(HostCommands, TakeAndShowHowOftenInWords) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"--every Mon,wed,friday", "mon wed fri", "edit"},
      {"--every 'mon, tue'", "mon tue", "add"},
      {"--every weekend", "sat sun", "edit"},
      {"--every 1d", "every day", "add"},
      {"--every 3d", "every 3 days", "edit"},
      {"--every 'other day'", "every 2 days", "add"},
      {"--every '2 weeks'", "every 14 days", "edit"},
      {"--times 3 --per week", "3 times a week", "edit"},
      {"--times 1 --per month", "once a month", "edit"},
      {"--every 'every day, in 3 steps'", "every day, in 3 steps", "edit"},
      {"--total 20 --per month", "20 a month", "edit"},
      {"--every 'every 3 days'", "every 3 days", "edit"},
      {"--times 3 --per day", "every day, in 3 steps", "edit"},
      {"--every '20 a month'", "20 a month", "edit"},
      {"--every '3 times a week'", "3 times a week", "edit"},
      {"--total 20 --per week --type hk_distance --unit km", "20 km a week", "add"},
      {"--total 8 --per day --type hk_water --unit cups_us", "every day", "add"}};
  answer("04T08:00:00", "task add Read");
  for (const auto& [options, words, command] : cases) {
    const auto task = std::string(command) == "edit" ? "edit Read " : "add 'Read more' ";
    const auto report = answer("04T08:00:00", "task " + (task + std::string(options)));
    EXPECT_EQ(*report["recurrence"].text(), words) << options;
  }
  EXPECT_THAT(at("04T08:00:00", "task list").output, HasSubstr("Read more"));
}

TEST_F(HostCommands, ListTheLogOfAllTasks) {
  for (const char* task : {"Read", "Run", "'No sweets' --negative"}) {
    answer("04T08:00:00", std::string("task add ") + task);
  }
  answer("04T09:00:00", "log add Read done");
  answer("04T10:00:00", "log add Run skip");
  answer("05T09:00:00", "log add Read miss");
  answer("05T10:00:00", "log add 'No sweets' miss");
  const auto listed = [&](const std::string& options) {
    const auto log = answer("05T11:00:00", "log list " + options);
    std::string all;
    for (const auto& entry : *log.array()) {
      all += *entry["title"].text() + " " + *entry["state"].text() + ", ";
    }
    return all;
  };
  const std::pair<const char*, const char*> cases[] = {
      {"", "No sweets missed, Read missed, No sweets done, Run skipped, Read done, "},
      {"--limit 2", "No sweets missed, Read missed, "},
      {"--limit 1 --to 20240304", "No sweets done, "},
      {"--since 2024-03-05", "No sweets missed, Read missed, "},
      {"--since 2024-03-05T08:30:00Z", "No sweets missed, No sweets done, "},
      {"Read", "Read done, Read missed, "},
      {"Read --limit 1", "Read missed, "}};
  for (const auto& [options, entries] : cases) EXPECT_EQ(listed(options), entries) << options;
  expectRefusal("log list --limit 0", "--limit \"0\": out of range");
  EXPECT_EQ(*answer("05T11:00:00", "status Read")["state"].text(), "missed");
}

TEST_F(HostCommands, ShowAmountsInTheirUnit) {
  const std::string now = "04T08:00:00";
  answer(now,
         "task add Water --type hk_water --target 8 --unit cups_us --partial 4 --data-source curr");
  answer(now, "task add Bed --type hk_bedtime");
  answer(now, "task add Sleep --type hk_sleep --target 8");
  answer(now, "task add Sip --type hk_water --target 8 --unit cups_us --data-source curr");
  answer(now, "log add Sip --progress 0.4");
  answer(now, "task add Play --timer 300 --partial 2");
  answer(now, "task add Tea --partial 3");
  for (const char* task : {"Water", "Play", "Tea"}) answer(now, std::string("log add ") + task);
  const std::pair<const char*, const char*> cases[] = {
      {"status Water", "due, 2 of 8 cups, streak"}, {"status Bed", "due, 10:00\u202fPM, streak"},
      {"status Play", "5 minutes of 10 minutes"},   {"status Tea", "due, 1 of 3, streak"},
      {"log list Water", "2 cups  2 cups"},         {"log list Play", "5 minutes  5 minutes"},
      {"log list Sip", "0.4 cups  0.4 cups"},       {"log list Sip", "amount    total"},
      {"status Sip", "due, 0.4 of 8 cups"},         {"task show Sleep", "hk_sleep, 8 hours\n"},
      {"task show Water", "hk_water, 8 cups\n"},    {"task show Bed", ", 10:00\u202fPM\n"}};
  for (const auto& [command, told] : cases) EXPECT_THAT(at(now, command).output, HasSubstr(told));
}

/// What another program or a backup may have written.
TEST_F(HostCommands, KeepHostileTextsFromTheTerminal) {
  using namespace std::string_literals;
  const std::string now = "04T08:00:00";
  const std::string id = *answer(now, "task add Read")["uniqueId"].text();
  behindItsBack([](NSManagedObjectContext& context) {
    const auto task = context.fetch<TaskEntity>(NSFetchRequest("Task")).value().front();
    task->setValue(TaskAttributes::title, "a\0b\n\x1b[2J\u009b\u202Ec\xE9"s);
  });
  for (const std::string command :
       {"status", "task list", "task show ", "task edit ", "history "}) {
    const auto result = at(now, command.ends_with(' ') ? command + id : command);
    EXPECT_THAT(result.output, HasSubstr(R"(a\u0000b\n\u001b[2J\u009b\u202ec)")) << command;
  }
  EXPECT_EQ(at(now, "notification make " + id).exitCode, 0);
  EXPECT_EQ(*answer(now, "task show " + id)["title"].text(), "a\0b\n\x1b[2J\u009b\u202Ec\uFFFD"s);
  EXPECT_THAT(at(now, "task show \"$(printf 'a\\nb\\033')\"").errors, HasSubstr(R"("a\nb\u001b")"));
}

TEST_F(HostCommands, TakeTasksAlongToAnotherStore) {
  EXPECT_EQ(at("04T08:00:00", "demo").exitCode, 0);
  const auto all = [&] { return at("04T08:00:00", "task list --json").output; };
  const std::string before = all();
  EXPECT_THAT(before, HasSubstr("Read a chapter"));
  const auto toLocal = at("04T08:00:00", "settings set cloudSyncTasksEnabled false");
  EXPECT_THAT(toLocal.errors, HasSubstr("tasks copied into the chosen store: 8"));
  EXPECT_EQ(all(), before);
  EXPECT_THAT(at("04T08:00:00", "store check").output, HasSubstr("is sound"));
  EXPECT_EQ(at("04T08:00:00", "task add Swim").exitCode, 0);
  const auto back = at("04T08:00:00", "settings set cloudSyncTasksEnabled true");
  EXPECT_THAT(back.errors, HasSubstr("has tasks of its own: 8"));
  EXPECT_EQ(all(), before);
}

/// After a process was killed that had copied everything, an extension has deleted a task from the
/// former store, and an import has come to the chosen one.
TEST_F(HostCommands, CompleteAChoiceOfTheStoreAndKeepWhatAnImportBrought) {
  const std::string now = "04T08:00:00";
  for (const char* title : {"Read", "Run"}) answer(now, std::string("task add ") + title);
  answer(now, "log add Read");
  EXPECT_EQ(at(now, "settings set cloudSyncTasksEnabled false").exitCode, 0);
  DefaultsSuite(folder_ / "preferences" / (std::string(appGroupIdentifier) + ".json"))
      .apply({{"storeSwitch.choosesCloud", false}, {"storeSwitch.began", Date::distantPast()}});
  const auto named = [](NSManagedObjectContext& context, const char* title) {
    return context
        .fetch<TaskEntity>(NSFetchRequest::of<TaskEntity>(TaskAttributes::title == title))
        ->front();
  };
  behindItsBack([&](auto& context) { context.deleteObject(*named(context, "Run")); });
  behindItsBack(
      [&](auto& context) {
        const auto entry = TaskLogEntryEntity::create(context);
        entry->setStored(TaskLogEntryEntity::entryDate, 20240303);
        entry->setValue(TaskLogEntryEntity::entryType, TaskLogEntryType::completedManuallyFull);
        entry->setValue(TaskLogEntryEntity::task, named(context, "Read"));
        const auto task = TaskEntity::create(context);
        task->setValue(TaskAttributes::title, "Swim");
        task->setValue(TaskAttributes::uniqueId, UniqueID::create());
      },
      "Velloro-Local.sqlite");
  answer(now, "task edit Read --title Write");
  answer(now, "task show Swim");
  EXPECT_EQ(answer(now, "task list").array()->size(), 2U);
  EXPECT_EQ(answer(now, "log list Write").array()->size(), 2U);
}

TEST_F(HostCommands, SwitchTheStoreOnceWhoeverWritesMeanwhile) {
  for (int round = 0; round < 4; ++round) {
    const std::string folder = folder_.string() + "/" + std::to_string(round);
    const auto started = [&](const std::string& command) {
      return "'" VELLORO_PROGRAM "' " + command + " --store '" + folder +
             "' >/dev/null 2>&1 & pids=\"$pids $!\"; ";
    };
    std::string script;
    for (const char* title : {"Read", "Write"}) script += started(std::string("task add ") + title);
    script += "wait; pids=; ";
    for (const char* title : {"Walk", "Swim", "Run"}) {
      script += started("settings set cloudSyncTasksEnabled false");
      script += started(std::string("task add ") + title);
    }
    script += "for pid in $pids; do wait $pid || exit 1; done";
    ASSERT_EQ(std::system(script.c_str()), 0);
    const auto listed = runProgram("task list --json --store '" + folder + "'").output;
    EXPECT_EQ(PropertyList::fromJSON(listed).array()->size(), 5U);
  }
}

TEST_F(HostCommands, FinishASwitchThatWasKilledAndTakeBackOneThatFails) {
  const auto run = [&](const std::string& arguments) {
    const auto result = runProgram(arguments + " --store '" + folder_.string() + "'");
    return result.output + result.errors;
  };
  const auto set = [&](const char* suite, const PropertyList::Dictionary& changes) {
    const auto file = folder_ / "preferences" / (std::string(suite) + ".json");
    auto values = PropertyList::fromFileText(platform::NSFileManager::contents(file).value());
    for (const auto& [key, value] : changes) values.dictionary()->insert_or_assign(key, value);
    EXPECT_TRUE(platform::NSFileManager::write(values.fileText(), file));
  };
  const std::string toLocal = "settings set cloudSyncTasksEnabled false";
  run("task add Read");
  run("settings set startOfDay 04:00:00");
  const auto lock = folder_ / "preferences/.velloro.app.json.lock";
  std::filesystem::remove(lock);
  std::filesystem::create_directory(lock);  // the switch can't be saved
  EXPECT_THAT(run(toLocal), HasSubstr("the tasks stay"));
  std::filesystem::remove(lock);
  EXPECT_THAT(run(toLocal), HasSubstr("tasks copied into the chosen store: 1"));
  // As if it had been killed after the copy.
  const std::string isCloud = "Settings_CloudSyncEnabled";
  set("velloro.app", {{isCloud, true}, {"Settings_StartOfDay", 0}});
  set(appGroupIdentifier, {{isCloud, true}, {"storeSwitch.choosesCloud", false}});
  run("log add Read --process widget");
  EXPECT_THAT(run("settings get cloudSyncTasksEnabled"), HasSubstr("true"))
      << "a look ends nothing";
  run("task add Write");
  EXPECT_THAT(run("settings get cloudSyncTasksEnabled"), HasSubstr("false"));
  EXPECT_THAT(run("settings get startOfDay"), HasSubstr("local   14400"));
  EXPECT_EQ(PropertyList::fromJSON(run("task list --json")).array()->size(), 2U);
  EXPECT_EQ(PropertyList::fromJSON(run("log list Read --json")).array()->size(), 1U);
}

}  // namespace
}  // namespace velloro
