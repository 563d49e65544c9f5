#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Files/NSUserDefaults.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Support/Processes.h"

#include <cmath>
#include <csignal>
#include <fstream>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace platform {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;
using Dictionary = NSUserDefaults::Dictionary;
namespace fs = std::filesystem;

class NSUserDefaultsTest : public ::testing::Test {
 protected:
  [[nodiscard]] static NSUserDefaults open(const char* name) {
    return NSUserDefaults::initWithSuiteName(name).value();
  }
  [[nodiscard]] std::string contents(const char* name) const {
    return NSFileManager::contents(folder_ / name).value();
  }
  /// Writes as a person's editor does: into the file that is there.
  void overwrite(const char* name, std::string_view text) const {
    fs::create_directories(folder_);
    std::ofstream(folder_ / name) << text;
  }

  VirtualEnvironment environment_;
  fs::path folder_ = environment_.directories().preferences;
};

TEST_F(NSUserDefaultsTest, ConvertsOnReading) {
  constexpr auto largest = std::numeric_limits<std::int64_t>::max();
  constexpr auto smallest = std::numeric_limits<std::int64_t>::min();
  using Text = std::optional<std::string>;
  const std::tuple<PropertyList, std::int64_t, bool, double, Text> cases[] = {
      {42, 42, true, 42, "42"},
      {true, 1, true, 1, "1"},
      {-2.75, -2, true, -2.75, "-2.75"},
      {1e300, largest, true, 1e300, "1e+300"},
      {" -3.5kg", -3, true, -3.5, " -3.5kg"},
      {"+4", 4, true, 4, "+4"},
      {"99999999999999999999", largest, true, 1e20, "99999999999999999999"},
      {"-99999999999999999999", smallest, true, -1e20, "-99999999999999999999"},
      {"Yes", 0, true, 0, "Yes"},
      {"infinity", 0, false, 0, "infinity"},
      {Data("17"), 0, false, 0, {}}};
  auto defaults = open("a");
  for (const auto& [value, integer, boolean, real, text] : cases) {
    defaults.setObject(value, "key");
    EXPECT_EQ(defaults.integerForKey("key"), integer) << value.json();
    EXPECT_EQ(defaults.boolForKey("key"), boolean) << value.json();
    EXPECT_DOUBLE_EQ(defaults.doubleForKey("key"), real) << value.json();
    EXPECT_EQ(defaults.stringForKey("key"), text) << value.json();
    EXPECT_EQ(defaults.objectForKey("key"), value) << value.json();
  }
}

TEST_F(NSUserDefaultsTest, KeepsEveryKindInTheFileOfItsName) {
  const PropertyList date = Date::fromISO8601("2024-03-07T12:00:00.25Z").value();
  NSUserDefaults::standardUserDefaults().setObjects({{"names", PropertyList::Array{"a", "b"}},
                                                     {"mixed", PropertyList::Array{"a", 1}},
                                                     {"map", Dictionary{{"x", 1.5}}},
                                                     {"data", Data("hi!")},
                                                     {"date", date}});
  const auto seen = open("velloro.app");
  EXPECT_THAT(seen.stringArrayForKey("names").value(), ElementsAre("a", "b"));
  EXPECT_FALSE(seen.stringArrayForKey("mixed"));
  EXPECT_EQ(seen.objectForKey("map"), PropertyList(Dictionary{{"x", 1.5}}));
  EXPECT_EQ(seen.dataForKey("data"), Data("hi!"));
  EXPECT_EQ(seen.objectForKey("date"), date);
  EXPECT_THAT(contents("velloro.app.json"), StartsWith("{\n  \"data\": {"));

  environment_.setBundle({});
  NSUserDefaults::standardUserDefaults().setObject(1, "a");
  EXPECT_EQ(open("standard").integerForKey("a"), 1);
  for (const char* unusable : {"", "..", "a/b", "a..b"}) {
    EXPECT_FALSE(NSUserDefaults::initWithSuiteName(unusable)) << unusable;
  }
}

TEST_F(NSUserDefaultsTest, RegisteredValuesShowWhereThereIsNone) {
  auto defaults = open("a");
  defaults.registerDefaults({{"a", 1}, {"b", 2}});
  defaults.setObject(3, "b");
  EXPECT_EQ(defaults.dictionaryRepresentation(), (Dictionary{{"a", 1}, {"b", 3}}));
  defaults.removeObjectForKey("b");
  EXPECT_EQ(defaults.integerForKey("b"), 2);
  EXPECT_EQ(contents("a.json"), "{}");
}

TEST_F(NSUserDefaultsTest, SeesWhatOthersChangeAndWritesOnlyWhatDiffers) {
  auto defaults = open("a");
  for (int value = 1; value < 30; ++value) {
    EXPECT_TRUE(endedWell(startProcess([&] { open("a").setObject(value, "a"); })));
    EXPECT_EQ(defaults.integerForKey("a"), value);
  }
  overwrite("a.json", R"({"a": "by hand"})");
  EXPECT_EQ(defaults.stringForKey("a"), "by hand");
  defaults.setObject("by hand", "a");
  defaults.removeObjectForKey("b");
  EXPECT_EQ(contents("a.json"), R"({"a": "by hand"})");
  fs::remove(folder_ / "a.json");
  EXPECT_FALSE(defaults.objectForKey("a"));
}

TEST_F(NSUserDefaultsTest, AFileThatMakesNoSenseIsToldOnceAndNotDestroyed) {
  auto defaults = open("a");
  for (const char* corrupt : {"{\"a\": 1", "[1]"}) {
    overwrite("a.json", corrupt);
    EXPECT_EQ(defaults.integerForKey("a") + defaults.integerForKey("a"), 0);
    defaults.setObject(2, "a");
  }
  EXPECT_EQ(contents("a.json.corrupt"), "{\"a\": 1");
  EXPECT_EQ(contents("a.json.corrupt.2"), "[1]");
  EXPECT_THAT(environment_.reports(), ElementsAre(HasSubstr("a.json"), HasSubstr("a.json")));

  fs::create_directories(folder_ / "unreadable.json");
  open("unreadable").setObject(1, "a");
  EXPECT_EQ(open("unreadable").integerForKey("a"), 1);
  EXPECT_THAT(environment_.reports(), SizeIs(4));
  EXPECT_TRUE(fs::is_directory(folder_ / "unreadable.json"));
}

TEST_F(NSUserDefaultsTest, WhatCannotBeWrittenStaysInMemoryUntilItCan) {
  auto defaults = open("a");
  defaults.setObject(1, "kept");
  fs::rename(folder_, folder_.string() + ".away");
  std::ofstream(folder_.string()) << "in the way";
  defaults.setObject(2, "a");
  defaults.setObject(std::nan(""), "a");  // no text can hold these two
  defaults.setObject("\xff", "b");
  defaults.removeObjectForKey("kept");
  EXPECT_EQ(defaults.dictionaryRepresentation(), (Dictionary{{"a", 2}}));
  EXPECT_THAT(environment_.reports(), Each(HasSubstr(folder_.string())));

  fs::remove(folder_);
  fs::rename(folder_.string() + ".away", folder_);
  defaults.setObject(3, "b");
  EXPECT_EQ(contents("a.json"), "{\n  \"a\": 2,\n  \"b\": 3\n}");
}

TEST_F(NSUserDefaultsTest, ProcessesAndThreadsLoseNoWrite) {
  constexpr int rounds = 15;
  workInProcesses(2, 10, [](int worker) {
    auto defaults = open("a");
    const std::string mine = "worker" + std::to_string(worker);
    for (int round = 1; round <= rounds; ++round) {
      EXPECT_EQ(defaults.integerForKey(mine), round - 1);
      defaults.setObject(round, mine);
      defaults.setObjects({{"pair.a", mine}, {"pair.b", mine}, {mine + ".shared", round}});
      const auto seen = defaults.dictionaryRepresentation();
      EXPECT_EQ(seen.at("pair.a"), seen.at("pair.b"));
    }
  });
  const Dictionary end = open("a").dictionaryRepresentation();
  EXPECT_THAT(end, SizeIs(42));
  for (const auto& [key, value] : end) EXPECT_TRUE(value.text() || value == rounds) << key;
  EXPECT_THAT(NSFileManager::contentsOfDirectory(folder_).value(),
              ElementsAre(".a.json.lock", "a.json"));
}

TEST_F(NSUserDefaultsTest, AKilledWriterLeavesEveryAcknowledgedWrite) {
  for (int life = 0; life < 20; ++life) {
    int acknowledged[2];
    ASSERT_EQ(::pipe(acknowledged), 0);
    const pid_t writer = startProcess([&] {
      for (std::int64_t value = 1;; ++value) {
        open("a").setObject(value, "a");
        if (::write(acknowledged[1], &value, sizeof value) != sizeof value) break;
      }
    });
    ::close(acknowledged[1]);
    std::int64_t last = 0;
    while (last < 3 + life) ASSERT_EQ(::read(acknowledged[0], &last, sizeof last), sizeof last);
    ::kill(writer, SIGKILL);
    while (::read(acknowledged[0], &last, sizeof last) == sizeof last) continue;
    ::close(acknowledged[0]);
    EXPECT_FALSE(endedWell(writer));
    const std::int64_t stored = open("a").integerForKey("a");
    EXPECT_TRUE(stored == last || stored == last + 1) << stored << " after " << last;
    open("a").setObject(0, "a");
  }
  EXPECT_THAT(environment_.reports(), IsEmpty());
}

}  // namespace
}  // namespace platform
