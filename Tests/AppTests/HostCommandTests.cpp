#include "AppTests/Program.h"
#include "CoreData/NSPersistentContainer.h"
#include "DataManager/DataManager.h"
#include "Foundation/JSON.h"
#include "Foundation/PropertyList.h"
#include "Tasks/TaskTemporalDataEntity.h"
#include "Tasks/VelloroModel.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using platform::PropertyList;
using testing::HasSubstr;

/// A store of its own, seen at instants of March 2024 in Berlin.
class HostCommands : public testing::Test {
 protected:
  ~HostCommands() override { std::filesystem::remove_all(folder_); }

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
  /// The row of what is kept of the only task's log, changed by someone else.
  void withRow(const std::function<void(TaskTemporalDataEntity&)>& work) const {
    NSPersistentContainer container(velloroModelName, velloroModel());
    container.setPersistentStoreDescriptions({NSPersistentStoreDescription::initWithURL(
        folder_ / "groups" / DataManager::groupIdentifier / "Velloro-CloudKit.sqlite")});
    container.loadPersistentStores([](const auto&, const ErrorPtr& error) { EXPECT_FALSE(error); });
    NSManagedObjectContext& context = *container.viewContext();
    const NSFetchRequest request{std::string(TaskTemporalDataEntity::entityName())};
    work(*context.fetch<TaskTemporalDataEntity>(request).value().front());
    EXPECT_TRUE(context.save());
  }
  void refuses(const std::string& now, const std::string& arguments, const std::string& complaint) {
    const auto result = at(now, arguments);
    EXPECT_NE(result.exitCode, 0) << arguments;
    EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1) << result.errors;
    EXPECT_THAT(result.errors, HasSubstr(complaint)) << arguments;
  }

 private:
  [[nodiscard]] std::string here(const std::string& now) const {
    return " --zone Europe/Berlin --locale en_US --store '" + folder_.string() +
           "' --now 2024-03-" + now + "+01:00";
  }

 protected:
  std::filesystem::path folder_ = std::filesystem::path(testing::TempDir()) /
                                  (std::string("velloro-host-") +
                                   testing::UnitTest::GetInstance()->current_test_info()->name());
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

  const auto log = answer("08T15:00:00", "log list Read");
  EXPECT_EQ(log.array()->size(), 4U) << "two completions, a skip, a miss";
}

TEST_F(HostCommands, ShowWhatAWriterWouldFindAndSaveNothing) {
  const std::pair<const char*, const char*> tasks[] = {
      {"Read", ""},
      {"Tea", "--negative"},
      {"Call", "--mode numberOfDaysInMonth --count 2"},
      {"Sweets", "--mode numberOfDaysInWeek --count 6 --negative"},
      {"Plants", "--interval 3 --negative"},
      {"Swim", "--mode aggregateOverFortnight --first-day-of-week monday"},
      {"Walk", "--type hk_steps --target 9000 --unit steps"}};
  for (const auto& [task, options] : tasks) {
    answer("04T08:00:00", std::string("task add ") + task + " " + options);
    answer("04T09:00:00", std::string("log add ") + task);
  }
  const std::string now = "26T12:00:00";
  const auto saves = [&] { return *answer(now, "store stats")["saves"].integer(); };
  const auto seen = [&](const std::string& task) {
    std::string all;
    for (const char* command : {"status", "log list", "history", "notification make"}) {
      const std::string json = command == std::string("notification make") ? "" : " --json";
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
  withRow([](TaskTemporalDataEntity& row) {
    EXPECT_EQ(row.value(TaskTemporalDataEntity::progress), 5);
    EXPECT_EQ(row.value(TaskTemporalDataEntity::lastUpdated),
              Date::fromISO8601("2024-03-04T08:00:00Z"));
    row.setValue(TaskTemporalDataEntity::progress, 7.0);
  });
  const auto next = answer("04T10:00:00", "log add Stand");
  EXPECT_EQ(*next["progress"].real(), 5) << "what is left by its title";
  EXPECT_EQ(*next["type"].text(), "completed_manually");
  withRow([](TaskTemporalDataEntity& row) {
    EXPECT_EQ(row.value(TaskTemporalDataEntity::progress), 7);
  });
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
  answer("04T08:00:00", "task add Water --type hk_water --target 8 --unit cups_us --partial 4");
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

TEST_F(HostCommands, TellTheHistory) {
  answer("04T08:00:00", "task add Read");
  answer("04T09:00:00", "log add Read");
  answer("06T09:00:00", "log add Read");
  const auto history = answer("07T09:00:00", "history Read --from 20240303");
  std::string statuses;
  for (const auto& period : *history["periods"].array()) statuses += *period["status"].text() + " ";
  EXPECT_EQ(statuses, "p c m c cp ");
  EXPECT_EQ(*history["shortTerm"]["numSamples"].integer(), 3);
  EXPECT_THAT(at("07T09:00:00", "history Read").output, HasSubstr("2024-03"));
}

TEST_F(HostCommands, MakeAReminderThatCanBeShown) {
  answer("04T08:00:00", "task add 'Drink tea' --icon tea --partial 3");
  answer("04T09:00:00", "log add 'Drink tea'");
  const auto file = std::filesystem::path(testing::TempDir()) / "velloro-made.json";
  EXPECT_EQ(at("04T10:00:00", "notification make 'Drink tea' > '" + file.string() + "'").exitCode,
            0);
  const auto shown = answer("04T10:00:00", "notification show '" + file.string() + "'");
  EXPECT_FALSE(*shown["fallback"].boolean());
  EXPECT_EQ(*shown["title"].text(), "Drink tea");
  EXPECT_NEAR(*shown["ring"]["progress"].real(), 1.0 / 3, 1e-9);
  std::filesystem::remove(file);
}

TEST_F(HostCommands, NameWhatTheyCannotDo) {
  answer("04T08:00:00", "task add Read");
  answer("04T08:00:00", "task add Run");
  const std::string now = "04T09:00:00";
  refuses(now, "log add Reed", "no task is called \"Reed\"; did you mean \"Read\"?");
  refuses(now, "log add Read done", "TYPE \"done\": not a type of entry");
  refuses(now, "log add Read --date 20240305", "--date \"20240305\": in the future");
  refuses(now, "log undo Read", "nothing to undo");
  refuses(now, "task add Plants --interval 31", "31 days between completions; the nearest is 30");
  refuses(now, "task add Weird --color red", "--color \"red\": not a colour");
  refuses(now, "task add Walk --days ''", "never be due");
  refuses(now, "task edit Read --title ''", "TITLE \"\": empty");
  refuses(now, "history Read --from 20240405", "after --to");
  refuses(now, "demo", "has tasks already");
  EXPECT_EQ(answer(now, "task list").array()->size(), 2U) << "what was refused left nothing";
}

TEST_F(HostCommands, TakeTasksAlongToAnotherStore) {
  EXPECT_EQ(at("04T08:00:00", "demo").exitCode, 0);
  const auto all = [&] { return at("04T08:00:00", "task list --json").output; };
  const std::string before = all();
  const auto toLocal = at("04T08:00:00", "settings set cloudSyncTasksEnabled false");
  EXPECT_THAT(toLocal.errors, HasSubstr("tasks copied into the chosen store: 8"));
  EXPECT_EQ(all(), before);
  EXPECT_THAT(at("04T08:00:00", "store check").output, HasSubstr("is sound"));
  EXPECT_EQ(at("04T08:00:00", "task add Swim").exitCode, 0);
  const auto back = at("04T08:00:00", "settings set cloudSyncTasksEnabled true");
  EXPECT_THAT(back.errors, HasSubstr("has tasks of its own: 8"));
  EXPECT_EQ(all(), before);
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

TEST_F(HostCommands, FillADemonstration) {
  EXPECT_EQ(at("07T20:00:00", "demo").exitCode, 0);
  EXPECT_EQ(answer("07T20:00:00", "status").array()->size(), 8U);
  EXPECT_THAT(at("07T20:00:00", "status").output, HasSubstr("Read a chapter"));
}

}  // namespace
}  // namespace velloro
