#include "AppTests/Program.h"
#include "Foundation/Coding/PropertyList.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/VirtualEnvironment.h"

#include <sstream>
#include <string>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using platform::NSFileManager;
using platform::PropertyList;
using testing::HasSubstr;

struct NotificationCommand : ::testing::Test {
  std::string file(const std::string& name, const std::string& content) const {
    const auto path = environment.directories().temporary / name;
    EXPECT_TRUE(NSFileManager::write(content, path));
    return path.string();
  }
  [[nodiscard]] std::string store() const {
    return " --store " + (environment.directories().temporary / "store").string();
  }
  /// A sample as the command shows it.
  [[nodiscard]] PropertyList shown(const std::string& sample) const {
    const auto written = runProgram("notification sample " + sample);
    EXPECT_EQ(written.exitCode, 0) << written.errors;
    const auto result = runProgram("notification show " + file(sample, written.output) +
                                   " --json --locale en_US" + store());
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    return PropertyList::fromJSON(result.output);
  }

  platform::VirtualEnvironment environment;
};

TEST_F(NotificationCommand, KeepsTheBodyFromSteeringTheTerminal) {
  const auto hostile = file("hostile", R"({"title": "T", "body": "a\u001b[8mb\nc"})");
  const auto result = runProgram("notification show " + hostile + store());
  EXPECT_THAT(result.output, HasSubstr("a\\u001b[8mb\nc\n"));
}

TEST_F(NotificationCommand, ShowsEverySample) {
  std::istringstream names(runProgram("notification sample").output);
  int count = 0;
  bool hasFailed = false;
  for (std::string name; std::getline(names, name); ++count) {
    const PropertyList report = shown(name);
    const bool isFallback = name == "no-payload" || name == "undecodable-payload";
    hasFailed = hasFailed || isFallback;
    EXPECT_EQ(report["fallback"].boolean(), isFallback) << name;
    EXPECT_EQ(report["ring"].isNull(), isFallback) << name;
    EXPECT_FALSE(report["body"].text()->empty()) << name;
    EXPECT_EQ(NSFileManager::exists(environment.directories().temporary / "store"), hasFailed)
        << name << ": nothing is made but the note of a failure";
  }
  EXPECT_EQ(count, 12);
  const PropertyList partial = shown("partial");
  EXPECT_EQ(partial["title"], "Drink water 5 cups");
  EXPECT_EQ(partial["preferredContentSize"],
            (PropertyList::Dictionary{{"width", 320}, {"height", 128}}));
  EXPECT_EQ(partial["ring"]["progress"].real(), 0.375);
  EXPECT_EQ(partial["ring"]["numSegments"].integer(), 8);
  EXPECT_EQ(partial["ring"]["bottomCaptionTrailingIcons"],
            PropertyList(PropertyList::Array{"almostBestStreak"}));
  EXPECT_EQ(shown("timed-progress")["title"], "FIVE MINUTES REMAINING");
  EXPECT_EQ(*shown("completed")["ring"]["state"].text(), "completed");
  EXPECT_EQ(*shown("negative")["ring"]["fillDirection"].text(), "ccw");
  EXPECT_EQ(shown("shared-with-me")["ring"]["badges"].array()->size(), 1U);
}

TEST_F(NotificationCommand, PlaysAnAnswer) {
  const std::string sample = file("s.json", runProgram("notification sample positive").output);
  const auto played = runProgram("notification act " + sample + " markAsDone" + store());
  EXPECT_EQ(played.output,
            "0.560  state    checked\n"
            "0.960  state    completed\n"
            "0.960  caption  9\n"
            "1.460  answer   dismissAndForwardAction\n"
            "1.460  forwards NotificationManager.Action.MarkAsDone\n");
  const auto snoozed = PropertyList::fromJSON(
      runProgram("notification act " + sample + " snooze --json" + store()).output);
  EXPECT_EQ(snoozed["timeline"], PropertyList(PropertyList::Array{}));
  EXPECT_EQ(snoozed["completion"]["option"].integer(), 2);
  EXPECT_EQ(snoozed["completion"]["time"].real(), 0);
  EXPECT_EQ(*snoozed["forwarded"]["actionIdentifier"].text(), "NotificationManager.Action.Snooze");

  const auto frames = environment.directories().temporary / "frames";
  const auto drawn = runProgram("notification act " + sample + " markAsDone --frames " +
                                frames.string() + store());
  EXPECT_EQ(drawn.exitCode, 0) << drawn.errors;
  EXPECT_EQ(NSFileManager::contentsOfDirectory(frames)->size(), 45U);  // 1.46 s, 30 a second
}

TEST_F(NotificationCommand, DrawsWhateverItCanRead) {
  const std::string picture = (environment.directories().temporary / "a.png").string();
  for (const char* content :
       {"{}", R"({"title": 5, "body": ["x"], "userInfo": "text"})",
        R"({"title": "مرحبا", "body": "a\nb", "userInfo": {"velloro": {"task": {}}}})"}) {
    const auto result = runProgram("notification show " + file("n.json", content) +
                                   " --locale ar --width 100 --scale 1 --png " + picture + store());
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(NSFileManager::contents(picture).value(), testing::StartsWith("\x89PNG"));
  }
  EXPECT_EQ(runProgram("notification show " + store() + " " +
                       file("n.json", R"({"title": "a\u0000b\u001bc", "body": "d\n\u009b"})"))
                .output,
            "a\\u0000b\\u001bc\nd\n\\u009b\n(shown by its text alone)\n");
  for (const std::string& content :
       {std::string("[]"), std::string("{\"title\": \"\xFF\"}"), std::string(200000, '[')}) {
    const auto result = runProgram("notification show " + file("n.json", content));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("is no notification"));
  }
  expectRefusal("notification sample partal", "did you mean \"partial\"?");
  expectRefusal("notification show n.json --width 5", "--width \"5\": out of range");
}

}  // namespace
}  // namespace velloro
