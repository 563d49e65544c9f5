#include "AppTests/Program.h"
#include "Foundation/Coding/PropertyList.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "OxKit/Platform.h"

#include <filesystem>
#include <string>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::HasSubstr;

/// A store of its own, seen at instants of March 2024 in Berlin.
class StatisticsCommands : public testing::Test {
 protected:
  [[nodiscard]] std::string here(const std::string& now) const {
    return " --zone Europe/Berlin --locale en_US --store '" + folder_.string() +
           "' --now 2024-03-" + now + ":00+01:00";
  }
  std::string said(const std::string& now, const std::string& arguments) const {
    const auto result = runProgram(arguments + here(now));
    EXPECT_EQ(result.exitCode, 0) << arguments << ": " << result.errors;
    return result.output;
  }
  void refuses(const std::string& now, const std::string& arguments,
               const std::string& complaint) const {
    const auto result = runProgram(arguments + here(now));
    EXPECT_EQ(result.exitCode, 1) << arguments;
    EXPECT_THAT(result.errors, HasSubstr(complaint)) << arguments;
  }

  const VirtualEnvironment environment_;
  const std::filesystem::path folder_ = environment_.directories().temporary / "store";
};

TEST_F(StatisticsCommands, CountWhatTheLogHas) {
  said("01T08:00", "task add Read --every day");
  for (const char* day : {"01T09:30", "02T23:10", "04T09:00"}) said(day, "log add Read");
  const std::string one = said("05T12:00", "stats Read --json --points 2");
  EXPECT_THAT(one, HasSubstr(R"("pct":0.75,"numCompletions":3,"numMisses":1,)"));
  EXPECT_THAT(one, HasSubstr(R"("earliestDate":20240301,"latestDate":20240305,)"
                             R"("statsAccountForToday":false,"measurementDuration":"d",)"
                             R"("data":[0.6666666666666666,1])"));
  EXPECT_THAT(one, HasSubstr(R"("values":{"0":0,"1":1,"5":1,"6":1})"));
  EXPECT_THAT(said("05T12:00", "stats Read --json --period 2024-02"), HasSubstr(R"("data":[])"));
  EXPECT_THAT(said("05T12:00", "stats --json"),
              HasSubstr(R"("globalCompletedByDay":{"20240301":1,"20240302":1,"20240304":1},)"
                        R"("globalNumEntriesByDay":{"20240301":1,"20240302":1,"20240303":1,)"));
  EXPECT_EQ(said("05T12:00", "stats Read Read --json").front(), '[');
  EXPECT_THAT(said("05T12:00", "stats Read"), HasSubstr("done 3 of 4, 75 %, streak 1 (best 2)"));
  expectRefusal("stats Read --period 2024-13" + here("05T12:00"), "--period \"2024-13\"");

  EXPECT_THAT(said("05T12:00", "stats Read --svg - --dark"), HasSubstr("<svg"));
  EXPECT_THAT(said("05T12:00", "calendar Read --year 2024 --png -"), HasSubstr("PNG"));
  EXPECT_THAT(said("05T12:00", "report -"), HasSubstr("<h2>Read</h2>"));
  refuses("05T12:00", "graph --width 50000 --png -", "50000 by 160 points");

  const auto month = PropertyList::fromJSON(said("05T12:00", "calendar Read --json"));
  std::string statuses;
  for (const auto& item : *month["sortedPeriods"].array()) {
    statuses += *item["period"]["status"].text() + " ";
  }
  EXPECT_TRUE(statuses.starts_with("c c m c cp f f ")) << statuses;
  EXPECT_EQ(month["weeks"].array()->size(), 6U);
  EXPECT_THAT(said("05T12:00", "calendar Read"), HasSubstr("\n 3 ✗  4 ●  5 ○  6    7"));
  const auto year = PropertyList::fromJSON(said("05T12:00", "calendar Read --year 2024 --json"));
  EXPECT_EQ(year.array()->size(), 12U);
  for (const auto& [columns, first] :
       {std::pair("36", "January 2024\n"),
        {"72", "January 2024  +February 2024\n"},
        {"300", "January 2024  +February 2024  +March 2024  +April 2024\n"}}) {
    setenv("COLUMNS", columns, 1);
    EXPECT_THAT(said("05T12:00", "calendar Read --year 2024"),
                testing::ContainsRegex(std::string("^") + first));
  }
  unsetenv("COLUMNS");
}

TEST_F(StatisticsCommands, AdviseAndKeepTheAnswer) {
  said("01T08:00", "task add Swim --times 3 --per week");
  said("01T08:00", "task add Water --type hk_water --target 8 --unit cups_us --partial 8");
  EXPECT_THAT(said("01T09:00", "advice Swim --json"),
              HasSubstr(R"("doNotAdjust":{"notEnoughSamples":{"_0":0,"_1":7}}})"));
  refuses("01T09:00", "advice Swim --accept", "too early to say");
  // Nothing was done: too hard.
  EXPECT_THAT(said("12T09:00", "advice --json"),
              HasSubstr(R"("adjust":"makeItEasier","recommendation":{"source":{"app":{"_0":)"
                        R"({"makeItEasier":{}}}},"type":{"timesPerWeek":{"_0":2}}}})"));
  EXPECT_EQ(said("12T09:00", "advice Swim --accept"), "Accepted: make it easier: 2 days a week\n");
  EXPECT_EQ(said("12T09:00", "advice Water --decline"),
            "Declined: make it easier: a target of 7 in 7 steps\n");
  EXPECT_THAT(said("12T10:00", "task show Swim --json"), HasSubstr(R"("numCompletions":2)"));
  EXPECT_THAT(said("12T10:00", "advice Swim --json"), HasSubstr(R"("timesPerWeek":{"_0":1})"));
  EXPECT_THAT(said("12T10:00", "advice Water --json"), HasSubstr(R"({"_0":11,"_1":21})"));
  expectRefusal("advice --accept" + here("12T10:00"), "one TASK is needed");
}

TEST_F(StatisticsCommands, TellWhatComesNextAndWhenAllWentWell) {
  for (const char* title : {"A", "B", "C", "D", "E", "F"}) {
    said("01T08:00", std::string("task add ") + title);
    said("01T08:00",
         std::string("reminder add ") + title + " 18:0" + std::to_string(title[0] == 'B'));
  }
  const auto next = PropertyList::fromJSON(said("01T12:00", "next --json"));
  const auto& tasks = *next["tasks"].array();
  EXPECT_EQ(*tasks[0]["time"].text(), "2024-03-01T17:00:00Z");
  EXPECT_EQ(*tasks[5]["title"].text(), "B");
  EXPECT_EQ(*next["expiryDate"].text(), "2024-03-01T17:00:00Z");
  EXPECT_EQ(*next["request"]["after"].text(), "2024-03-01T11:00:00Z");
  EXPECT_THAT(said("01T12:00", "status A --json"), HasSubstr(R"("grandSlam":false)"));
  for (const char* title : {"A", "B", "C"}) said("01T12:00", std::string("log add ") + title);
  for (const char* title : {"D", "E", "F"}) {
    said("01T12:00", std::string("log add ") + title + " skip");
  }
  EXPECT_THAT(said("01T13:00", "status A --json"), HasSubstr(R"("grandSlam":true)"));
  EXPECT_THAT(said("01T13:00", "status"), HasSubstr("A grand slam"));
  EXPECT_EQ(said("01T13:00", "next"), "Nothing.\n");
  EXPECT_EQ(PropertyList::fromJSON(said("01T13:00", "next --previous --order do --json"))["tasks"]
                .array()
                ->size(),
            6U);
}

TEST_F(StatisticsCommands, LayOutAGraph) {
  EXPECT_THAT(said("01T08:00",
                   "graph --values 1,0,2 --width 100 --height 60 --point-diameter 4 "
                   "--padding 3,10,4,10 --label-height 19 --max 1 --rtl --json"),
              HasSubstr(R"("points":[{"x":88,"y":20},{"x":50,"y":35},{"x":12,"y":5}])"));
  EXPECT_THAT(said("01T08:00", "graph --json"),
              HasSubstr(R"("linePath":[{"op":"moveTo","x":3,"y":157},{"op":"lineTo","x":317,)"
                        R"("y":157}])"));
  expectRefusal("graph --values 1,x", "--values \"x\"");
}

}  // namespace
}  // namespace velloro
