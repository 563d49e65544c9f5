#include "AppTests/Program.h"
#include "Foundation/Coding/PropertyList.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Foundation/Text/String.h"
#include "OxKit/Platform.h"

#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::HasSubstr;

/// A store of its own in March 2024 in Berlin.
class HealthCommands : public testing::Test {
 protected:
  HealthCommands() { std::filesystem::create_directories(folder_); }
  [[nodiscard]] ProgramResult run(const std::string& time, const std::string& arguments) const {
    return runProgram(arguments + " --zone Europe/Berlin --locale en_US --store '" +
                      folder_.string() + "' --now 2024-03-" + time + ":00+01:00");
  }
  std::string said(const std::string& time, const std::string& arguments) const {
    const auto result = run(time, arguments);
    EXPECT_EQ(result.exitCode, 0) << arguments << ": " << result.errors;
    return result.output;
  }
  [[nodiscard]] PropertyList answer(const std::string& time, const std::string& arguments) const {
    return PropertyList::fromJSON(said(time, arguments + " --json"));
  }
  [[nodiscard]] double progress(const std::string& time, const std::string& task,
                                const std::string& member = "currentValue") const {
    return answer(time, "health read " + task)["progress"]["base"][member].real().value_or(-1);
  }
  /// The types of a task's entries by their days, from the oldest.
  [[nodiscard]] std::string log(const std::string& time, const std::string& task) const {
    std::string text;
    const PropertyList entries = answer(time, "log list " + task);
    for (const PropertyList& entry : *entries.array()) {
      text += std::to_string(entry["date"].integer().value_or(0) % 100) + " " +
              *entry["type"].text() + ", ";
    }
    return text;
  }
  [[nodiscard]] std::string state(const std::string& time, const std::string& task) const {
    return *answer(time, "status " + task)["state"].text();
  }

  const VirtualEnvironment environment_;
  const std::filesystem::path folder_ = environment_.directories().temporary / "store";
};

TEST_F(HealthCommands, CountWhatIsEnteredByHandAndWhatIsMeasured) {
  (void)said("07T08:00", "task add Water --type hk_water --unit litres --target 2");
  (void)said("07T09:00", "log add Water --progress 0.5");
  EXPECT_EQ(answer("07T09:00", "health list dietaryWater").array()->size(), 1);
  (void)said("07T10:00", "health add dietaryWater 750 mL --source cup.app");
  EXPECT_EQ(progress("07T10:00", "Water"), 1.25);
  EXPECT_EQ(log("07T10:00", "Water"), "7 completed_manually_partial, ");
  (void)said("07T11:00", "health add dietaryWater 0.75 L --source cup.app");
  EXPECT_EQ(log("07T11:00", "Water"), "7 completed_manually_partial, 7 completed_auto, ");
  EXPECT_EQ(state("07T11:00", "Water"), "done");
  (void)said("07T12:00", "log undo Water");
  EXPECT_EQ(progress("07T12:00", "Water"), 1.5);
  EXPECT_EQ(log("07T12:00", "Water"), "") << "the data no longer say so";
  EXPECT_EQ(answer("07T12:00", "health list dietaryWater").array()->size(), 2);
  (void)said("07T13:00", "log add Water done");
  EXPECT_EQ(progress("07T13:00", "Water"), 2) << "what was left is a sample, too";
  EXPECT_EQ(log("07T13:00", "Water"), "7 completed_manually, ");
}

TEST_F(HealthCommands, SettleAndOpenPastDays) {
  (void)said("03T08:00", "task add Walk --type hk_distance --unit steps --target 1000");
  EXPECT_EQ(log("07T08:00", "Walk"),
            "3 missed_auto, 4 missed_auto, 5 missed_auto, 6 missed_auto, ");
  (void)said("07T08:00", "log add Walk --progress 1");
  (void)said("07T08:10", "log add Walk done --date 20240304");
  const auto file = folder_ / "in.csv";
  std::ofstream(file) << "type,start,end,value,unit,source\n"
                         "stepCount,2024-03-01T08:00:00Z,2024-03-01T09:00:00Z,2000,count,a\n"
                         "stepCount,2024-03-04T08:00:00Z,2024-03-04T09:00:00Z,2000,count,a\n"
                         "stepCount,2024-03-05T08:00:00Z,2024-03-05T09:00:00Z,999,count,a\n"
                         "stepCount,2024-03-06T08:00:00Z,2024-03-06T09:00:00Z,1000,count,a\n";
  const auto counts = answer("07T08:20", "health import " + file.string());
  EXPECT_EQ(counts["added"].integer(), 4);
  const std::string settled =
      "1 completed_auto, 3 missed_auto, 4 missed_auto, 4 completed_manually, 5 missed_auto, "
      "6 completed_auto, 7 completed_manually_partial, ";
  EXPECT_EQ(log("07T08:20", "Walk"), settled);
  EXPECT_EQ(answer("07T08:20", "health import " + file.string())["known"].integer(), 4);
  EXPECT_EQ(log("07T08:20", "Walk"), settled);
  (void)said("07T09:00", "health add stepCount 1 count --source b --start 2024-03-05T20:00:00Z");
  EXPECT_THAT(log("07T09:00", "Walk"), HasSubstr("5 completed_auto"));
}

TEST_F(HealthCommands, ShowAnImportInTheStatusAndEndReminders) {
  (void)said("06T08:00", "task add Sleep --type hk_sleep --target 7");
  (void)said("06T08:00", "task add Steps --type hk_distance --unit steps --target 5000");
  (void)said("06T08:00", "task add Bed --type hk_bedtime --target 23:00:00 --speed asleep_before");
  (void)said("06T08:00", "plan --apply");
  const auto file = folder_ / "export.xml";
  std::ofstream(file)
      << R"(<HealthData><Record type="HKQuantityTypeIdentifierStepCount" sourceName="W" unit="count" value="6000" startDate="2024-03-07 07:00:00 +0100" endDate="2024-03-07 07:30:00 +0100"/>
<Record type="HKCategoryTypeIdentifierSleepAnalysis" sourceName="W" value="HKCategoryValueSleepAnalysisAsleepCore" startDate="2024-03-06 22:30:00 +0100" endDate="2024-03-07 06:30:00 +0100"/></HealthData>)";
  (void)said("07T08:00", "health import " + file.string());
  EXPECT_EQ(state("07T08:00", "Steps"), "done");
  EXPECT_EQ(state("07T08:00", "Sleep"), "done");
  EXPECT_EQ(progress("07T08:00", "Sleep"), 8);
  EXPECT_EQ(progress("07T08:00", "'Bed' --date 20240306", "numCompletions"), 1);
  EXPECT_EQ(state("07T08:00", "Bed"), "due");
  EXPECT_THAT(log("07T08:00", "Bed"), HasSubstr("6 completed_auto"));
}

TEST_F(HealthCommands, RefuseWhatCanNotBe) {
  (void)said("07T08:00", "task add Tea --timer 300");
  (void)said("07T08:00", "task add Water --type hk_water");
  const auto unread = run("07T08:00", "health read Tea --json");
  EXPECT_EQ(unread.exitCode, 1);
  EXPECT_THAT(unread.output, HasSubstr(R"({"error":"noQualifyAlgorithm"})"));
  EXPECT_EQ(*answer("07T08:00", "health read Water")["readingType"].text(), "fromLogEntries");
  for (const auto& [arguments, complaint] :
       {std::pair("health add dietaryWater 1 kcal", "not a unit of dietaryWater"),
        {"health add dietaryWater", "needs a value and a unit"},
        {"health add dietarywatr 1 L", "dietaryWater"},
        {"health add sleepAnalysis", "needs a --category"},
        {"health add sleepAnalysis --category dozing", "not a category"},
        {"health add handwashingEvent 1 count", "has no amount"},
        {"health add stepCount 1 count --start 2024-03-07T08:00:00Z --end 2024-03-07T07:00:00Z",
         "before the start"},
        {"health add workout --activity flying", "not an activity"},
        {"health sources --order Nobody", "not a source"},
        {"task edit Tea --speed run", "timer has no speeds"},
        {"task add A --type hk_water --speed run", "has no speeds"},
        {"task add A --type hk_bedtime --speed awake_before,awake_after", "only one"},
        {"task add A --type hk_water --data-source some", "data source"}}) {
    const auto result = run("07T08:00", arguments);
    EXPECT_NE(result.exitCode, 0) << arguments;
    EXPECT_TRUE(result.output.empty()) << arguments;
    EXPECT_THAT(result.errors, HasSubstr(complaint)) << arguments;
  }
  EXPECT_EQ(said("07T08:00", "health list"), "");
  EXPECT_EQ(run("07T08:00", "health import /nowhere --json").exitCode, 1);
}

}  // namespace
}  // namespace velloro
