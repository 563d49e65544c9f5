#include "AppTests/Program.h"
#include "Foundation/Coding/PropertyList.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "OxKit/Platform.h"

#include <filesystem>
#include <string>

#include <gmock/gmock.h>

namespace velloro {
namespace {

/// On 7 March 2024 in Berlin, with the tasks "Read" at 15:00 and 18:00, and "Walk" at 18:20.
class PlanCommand : public testing::Test {
 protected:
  PlanCommand() {
    told("task add Read");
    told("task add Walk");
    told("reminder mode Read none");
    told("reminder add Read 15:00");
    told("reminder add Read 18:00");
  }

  std::string told(const std::string& command) {
    const auto result = runProgram("--store '" + folder_.string() + "' --now 2024-03-07T" + now_ +
                                   "+01:00 --zone Europe/Berlin " + command);
    EXPECT_EQ(result.exitCode, 0) << command << result.errors;
    return result.output;
  }
  /// The pending reminders of the day: "r7 15:00, s 12:05".
  std::string pending() {
    std::string text;
    const auto list = PropertyList::fromJSON(told("notification list --json"));
    for (const PropertyList& request : *list.array()) {
      const std::string id = *request["id"].text();
      const auto trigger = request["trigger"].text();
      if (!trigger || !trigger->starts_with("2024-03-07") || id.starts_with("b")) continue;
      const int hour = std::stoi(trigger->substr(11, 2)) + 1;
      text += (text.empty() ? "" : ", ") +
              (id.starts_with("r") ? id.substr(0, id.find('.')) : "s") + " " +
              std::to_string(hour) + trigger->substr(13, 3);
    }
    return text;
  }

  const VirtualEnvironment environment_;
  const std::filesystem::path folder_ = environment_.directories().temporary / "store";
  std::string now_ = "12:00:00";
};

TEST_F(PlanCommand, PlansAgainWhatCommandsChange) {
  const std::string plan = told("plan --seed 7 --json --explain");
  EXPECT_EQ(told("plan --seed 7 --json --explain"), plan);
  told("log add Walk");
  told("log undo Walk");
  EXPECT_EQ(pending(), "") << "nothing is planned before the user has allowed it";
  told("plan --apply");
  const std::string all = "r7 15:00, r7 18:00, r7 18:20";
  EXPECT_EQ(pending(), all);
  told("plan --apply");
  EXPECT_EQ(pending(), all);
  told("log add Walk");
  EXPECT_EQ(pending(), "r7 15:00, r7 18:00");
  told("reminder remove Read 15:00");
  EXPECT_EQ(pending(), "r7 18:00");
  told("task archive Read");
  EXPECT_EQ(pending(), "");
  told("task resume Read");
  told("log undo Walk");
  EXPECT_EQ(pending(), "r7 18:00, r7 18:20");
}

TEST_F(PlanCommand, BringsBackWhatWasPutOff) {
  told("task add Learn");  // its time, 18:30, is first learned by what puts it off
  told("plan --apply");
  now_ = "15:10:00";
  const std::string rest = "r7 18:00, r7 18:20, r7 18:30";
  told("snooze Read");
  EXPECT_EQ(pending(), "s 15:40, " + rest);
  told("settings set nmSnoozeDuration 7200");
  told("snooze Read --for 4h");
  EXPECT_EQ(pending(), rest + ", s 19:10") << "in the place of the earlier one";
  told("settings unset nmSnoozeDuration");
  told("plan --apply");
  EXPECT_EQ(pending(), rest + ", s 19:10");
  now_ = "17:55:00";
  told("snooze Walk");
  EXPECT_EQ(pending(), "r7 18:00, s 18:25, r7 18:30, s 19:10") << "not also at 18:20";
  told("--process widget log add Read");
  told("log add Walk");
  EXPECT_EQ(pending(), "r7 18:30") << "also of what another process has finished";
  told("remind Walk --at 2024-03-07T20:00:00+01:00");
  EXPECT_EQ(pending(), "r7 18:30, s 20:00");
}

TEST_F(PlanCommand, ChangesNothingByReadingAndAllOnANewDayOfAnyTask) {
  told("task edit Read --start-of-day 04:00:00");
  now_ = "00:05:00";
  told("plan --apply");
  const std::string before = told("notification list --json");
  now_ = "22:00:00";
  for (const char* reading : {"plan", "badge", "status", "reminder list Read", "log list"}) {
    told(reading);
    EXPECT_EQ(told("notification list --json"), before) << reading;
  }
  told("log add Walk");
  // The one of "Read" has joined that of "Walk".
  const std::string after = told("notification list --json");
  EXPECT_NE(after.find("r9."), after.rfind("r9."));
  EXPECT_EQ(before.find("r9."), before.rfind("r9."));
}

}  // namespace
}  // namespace velloro
