#include "AppTests/Program.h"
#include "Foundation/Coding/PropertyList.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Foundation/Text/String.h"
#include "OxKit/Platform.h"

#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace velloro {
namespace {

using testing::HasSubstr;

/// A store of its own with a timer of two steps of five minutes, on the 7th of March 2024 in
/// Berlin.
class TimerCommands : public testing::Test {
 protected:
  TimerCommands() {
    std::filesystem::create_directories(folder_);
    (void)said("11:00:00", "task add Read --timer 300 --partial 2");
  }
  [[nodiscard]] std::string here(const std::string& time, const std::string& day = "07") const {
    return " --zone Europe/Berlin --locale en_US --store '" + folder_.string() +
           "' --now 2024-03-" + day + "T" + time + "+01:00";
  }
  [[nodiscard]] std::string said(const std::string& time, const std::string& arguments,
                                 const std::string& day = "07") const {
    const auto result = runProgram(arguments + here(time, day));
    EXPECT_EQ(result.exitCode, 0) << arguments << ": " << result.errors;
    return result.output;
  }
  [[nodiscard]] PropertyList answer(const std::string& time, const std::string& arguments) const {
    return PropertyList::fromJSON(said(time, arguments + " --json"));
  }
  void refuses(const std::string& time, const std::string& arguments,
               const std::string& complaint) const {
    const auto result = runProgram(arguments + here(time));
    EXPECT_EQ(result.exitCode, 1) << arguments;
    EXPECT_THAT(result.errors, HasSubstr(complaint)) << arguments;
  }
  /// The types and amounts of the log, the oldest first, and the state of the task.
  [[nodiscard]] std::string log(const std::string& time, const std::string& day = "07") const {
    std::string text;
    const PropertyList entries = PropertyList::fromJSON(said(time, "log list Read --json", day));
    for (const PropertyList& entry : *entries.array()) {
      text +=
          *entry["type"].text() + " " + stringWithFormat("%g", *entry["progress"].real()) + ", ";
    }
    const auto status = PropertyList::fromJSON(said(time, "status Read --json", day));
    return text + *status["state"].text();
  }

  const VirtualEnvironment environment_;
  const std::filesystem::path folder_ = environment_.directories().temporary / "store";
};

TEST_F(TimerCommands, OutliveTheProgramAndEndOnce) {
  const std::string line = folder_ / "line";
  ASSERT_EQ(mkfifo(line.c_str(), 0600), 0);
  const auto killed =
      runProgram("timer start Read --wait --json" + here("12:00:00") + " > '" + line +
                 "' & read -r first < '" + line + "'; kill -9 $!; echo \"$first\"");
  ASSERT_NE(killed.output, "\n") << killed.errors;
  const std::string id = *PropertyList::fromJSON(killed.output)["entryId"].text();

  EXPECT_EQ(*answer("12:02:00", "timer list").array()->front()["remaining"].real(), 180);
  EXPECT_EQ(*answer("12:02:00", "status Read")["progress"]["currentValue"].real(), 120);
  refuses("12:02:00", "timer start Read", "is running already; it ends at 12:05");
  EXPECT_EQ(log("12:04:59"), "due");
  // Who reads sees what the next writer writes, and writes nothing.
  EXPECT_EQ(log("12:05:00"), "completed_manually_partial 300, due");
  EXPECT_EQ(answer("12:05:00", "timer list").array()->size(), 0U);
  EXPECT_EQ(log("12:04:59"), "due");

  std::string crowd;
  for (int i = 0; i < 7; ++i)
    crowd += "task edit Read --title Read" + here("12:06:00") + " & '" VELLORO_PROGRAM "' ";
  EXPECT_EQ(runProgram(crowd + "status" + here("12:06:00") + "; wait").exitCode, 0);
  EXPECT_EQ(log("12:06:00"), "completed_manually_partial 300, due");
  EXPECT_EQ(*answer("12:06:00", "log list Read").array()->front()["uniqueId"].text(), id);
  EXPECT_THAT(said("12:06:00", "settings get timedTaskEntries"), testing::Not(HasSubstr(id)));
}

TEST_F(TimerCommands, LogWhatRanWhenTheyAreStopped) {
  EXPECT_EQ(said("12:00:00", "timer start Read"), "Started Read: 5:00, ends at 12:05\n");
  EXPECT_THAT(said("12:02:00", "timer stop Read"), HasSubstr("Stopped Read after 2:00; now due"));
  EXPECT_EQ(log("12:02:00"), "timer_manually 120, due");
  EXPECT_EQ(said("12:10:00", "timer start Read"), "Started Read: 3:00, ends at 12:13\n");
  EXPECT_EQ(said("12:11:00", "timer list"), "Read  2:00 of 3:00 left, ends at 12:13\n");
  EXPECT_THAT(said("12:11:00", "timer stop Read --discard"), HasSubstr("logged nothing"));
  refuses("12:11:00", "timer stop Read", "no timer of");
  (void)said("12:20:00", "timer start Read");
  EXPECT_THAT(said("12:30:00", "timer stop Read"), HasSubstr("The time of Read was up at 12:23"));
  EXPECT_EQ(log("12:30:00"), "timer_manually 120, completed_manually_partial 180, due");
  (void)said("12:40:00", "timer start Read");
  EXPECT_EQ(log("12:44:00", "09"),
            "timer_manually 120, completed_manually_partial 180, completed_manually 300, "
            "missed_auto 0, due")
      << "the run counts for its own day, of which it is found two days later";
  EXPECT_THAT(said("12:41:00", "task archive Read --json"), HasSubstr("Read"));
  EXPECT_EQ(answer("12:41:00", "timer list").array()->size(), 0U);
  refuses("12:41:00", "timer start Read", "\"Read\" is archived");
}

TEST_F(TimerCommands, NeedATaskThatIsTimed) {
  (void)said("11:00:00", "task add Swim");
  refuses("12:11:00", "timer start Swim", "\"Swim\" is not timed");
  refuses("12:11:00", "timer stop Swim", "no timer of \"Swim\" is running");
  (void)said("11:00:00", "task add Games --timer 60 --negative");
  (void)said("12:00:00", "timer start Games");
  EXPECT_EQ(*answer("12:01:00", "status Games")["state"].text(), "happened");
  EXPECT_EQ(said("12:01:00", "timer list"),
            "No timer is running; \"velloro timer start TASK\" starts one.\n");
}

TEST_F(TimerCommands, CanBeWaitedFor) {
  (void)said("12:00:00", "log add Read timer_manually --progress 299.95");
  EXPECT_THAT(
      said("12:00:00", "timer start Read --wait"),
      testing::AllOf(HasSubstr("Started Read: 0:01"), HasSubstr("Time is up: Read; now due")));
  EXPECT_EQ(log("12:00:00"), "timer_manually 299.95, completed_manually_partial 0.05, due");
}

}  // namespace
}  // namespace velloro
