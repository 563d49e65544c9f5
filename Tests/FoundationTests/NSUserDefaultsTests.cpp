#include "Foundation/NSFileManager.h"
#include "Foundation/NSUserDefaults.h"
#include "Foundation/TestEnvironment.h"
#include "Support/Processes.h"

#include <cmath>
#include <csignal>
#include <fstream>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace platform {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
namespace fs = std::filesystem;

class NSUserDefaultsTest : public ::testing::Test {
 protected:
  [[nodiscard]] static NSUserDefaults open(const char* name) {
    return NSUserDefaults::initWithSuiteName(name).value();
  }
  [[nodiscard]] fs::path file(const std::string& name) const {
    return environment_.directories().preferences / name;
  }
  /// Writes as a person's editor does: into the file that is there.
  void overwrite(const std::string& name, std::string_view text) const {
    fs::create_directories(environment_.directories().preferences);
    std::ofstream(file(name)) << text;
  }
  [[nodiscard]] ino_t identity(const std::string& name) const {
    struct stat status {};
    ::stat(file(name).c_str(), &status);
    return status.st_ino;
  }

  TestEnvironment environment_;
};

TEST_F(NSUserDefaultsTest, ConvertsOnReading) {
  constexpr auto largest = std::numeric_limits<std::int64_t>::max();
  constexpr auto smallest = std::numeric_limits<std::int64_t>::min();
  using Text = std::optional<std::string>;
  const struct {
    PropertyList value;
    std::int64_t integer;
    bool boolean;
    double real;
    Text text;
  } cases[] = {
      {42, 42, true, 42, "42"},
      {0, 0, false, 0, "0"},
      {true, 1, true, 1, "1"},
      {-2.75, -2, true, -2.75, "-2.75"},
      {1e300, largest, true, 1e300, "1e+300"},
      {"17", 17, true, 17, "17"},
      {" -3.5kg", -3, true, -3.5, " -3.5kg"},
      {"+4", 4, true, 4, "+4"},
      {"99999999999999999999", largest, true, 1e20, "99999999999999999999"},
      {"-99999999999999999999", smallest, true, -1e20, "-99999999999999999999"},
      {"true", 0, true, 0, "true"},
      {"No", 0, false, 0, "No"},
      {"infinity", 0, false, 0, "infinity"},
      {"", 0, false, 0, ""},
      {Data("17"), 0, false, 0, {}},
      {PropertyList::Array{1}, 0, false, 0, {}},
  };
  auto defaults = open("a");
  for (const auto& [value, integer, boolean, real, text] : cases) {
    defaults.setObject(value, "key");
    const std::string name = text.value_or("(no text)");
    EXPECT_EQ(defaults.integerForKey("key"), integer) << name;
    EXPECT_EQ(defaults.boolForKey("key"), boolean) << name;
    EXPECT_DOUBLE_EQ(defaults.doubleForKey("key"), real) << name;
    EXPECT_EQ(defaults.stringForKey("key"), text) << name;
    EXPECT_EQ(defaults.objectForKey("key"), value) << name;
  }
}

TEST_F(NSUserDefaultsTest, KeepsEveryKindInAFileForPeople) {
  auto defaults = NSUserDefaults::standardUserDefaults();
  const Date date = Date::fromISO8601("2024-03-07T12:00:00.25Z").value();
  defaults.setObjects({{"names", PropertyList::Array{"a", "b"}},
                       {"mixed", PropertyList::Array{"a", 1}},
                       {"map", PropertyList::Dictionary{{"x", 1.5}}},
                       {"data", Data("hi!")},
                       {"date", date}});
  EXPECT_TRUE(endedWell(startProcess([&] {
    const auto seen = NSUserDefaults::standardUserDefaults();
    EXPECT_THAT(seen.stringArrayForKey("names").value(), ElementsAre("a", "b"));
    EXPECT_FALSE(seen.stringArrayForKey("mixed"));
    EXPECT_THAT(seen.arrayForKey("mixed").value(), SizeIs(2));
    EXPECT_EQ(seen.dictionaryForKey("map").value().at("x"), PropertyList(1.5));
    EXPECT_EQ(seen.dataForKey("data").value(), Data("hi!"));
    EXPECT_EQ(seen.objectForKey("date"), PropertyList(date));
  })));
  EXPECT_EQ(NSFileManager::contents(file("velloro.app.json")).value().substr(0, 9), "{\n  \"data");
}

TEST_F(NSUserDefaultsTest, NamesOfSuites) {
  for (const char* unusable : {"", "..", "a/b", "a..b"}) {
    EXPECT_FALSE(NSUserDefaults::initWithSuiteName(unusable)) << unusable;
  }
  environment_.setBundle({});
  NSUserDefaults::standardUserDefaults().setObject(1, "a");
  EXPECT_EQ(open("standard").integerForKey("a"), 1);
  EXPECT_EQ(open("group.velloro.app.today").integerForKey("a"), 0);
}

TEST_F(NSUserDefaultsTest, RegisteredValuesShowWhereThereIsNone) {
  auto defaults = open("a");
  defaults.registerDefaults({{"a", 1}, {"b", 2}});
  defaults.setObject(3, "b");
  EXPECT_EQ(defaults.dictionaryRepresentation(), (PropertyList::Dictionary{{"a", 1}, {"b", 3}}));
  defaults.removeObjectForKey("b");
  EXPECT_EQ(defaults.integerForKey("b"), 2);
  EXPECT_EQ(NSFileManager::contents(file("a.json")).value().find('2'), std::string::npos);
}

TEST_F(NSUserDefaultsTest, SeesWhatOthersChangeAndWritesOnlyWhatDiffers) {
  auto defaults = open("a");
  defaults.setObject(1, "a");
  const auto before = identity("a.json");
  defaults.setObject(1, "a");
  defaults.removeObjectForKey("b");
  EXPECT_EQ(identity("a.json"), before);
  for (int value = 2; value < 30; ++value) {
    EXPECT_TRUE(endedWell(startProcess([&] { open("a").setObject(value, "a"); })));
    EXPECT_EQ(defaults.integerForKey("a"), value);
  }
  overwrite("a.json", R"({"a": "by hand"})");
  EXPECT_EQ(defaults.stringForKey("a"), "by hand");
  fs::remove(file("a.json"));
  EXPECT_FALSE(defaults.objectForKey("a"));
}

TEST_F(NSUserDefaultsTest, ACorruptFileIsToldOnceAndKeptAside) {
  auto defaults = open("a");
  for (const char* corrupt : {"{\"a\": 1", "[1]"}) {
    overwrite("a.json", corrupt);
    EXPECT_EQ(defaults.integerForKey("a"), 0);
    EXPECT_EQ(defaults.integerForKey("a"), 0);
    defaults.setObject(2, "a");
    EXPECT_EQ(defaults.integerForKey("a"), 2);
  }
  EXPECT_EQ(NSFileManager::contents(file("a.json.corrupt")).value(), "{\"a\": 1");
  EXPECT_EQ(NSFileManager::contents(file("a.json.corrupt.2")).value(), "[1]");
  EXPECT_THAT(environment_.reports(), ElementsAre(HasSubstr("a.json"), HasSubstr("a.json")));
}

TEST_F(NSUserDefaultsTest, WhatCannotBeWrittenStaysInMemoryUntilItCan) {
  const fs::path folder = environment_.directories().preferences;
  auto defaults = open("a");
  defaults.setObject(1, "kept");
  fs::rename(folder, folder.string() + ".away");
  std::ofstream(folder) << "in the way";
  defaults.setObject(2, "a");
  defaults.setObject(std::nan(""), "a");
  defaults.removeObjectForKey("kept");
  EXPECT_EQ(defaults.integerForKey("a"), 2);
  EXPECT_FALSE(defaults.objectForKey("kept"));
  EXPECT_THAT(environment_.reports(), Each(HasSubstr(folder.string())));

  fs::remove(folder);
  fs::rename(folder.string() + ".away", folder);
  defaults.setObject(3, "b");
  EXPECT_TRUE(endedWell(startProcess([&] {
    EXPECT_EQ(open("a").dictionaryRepresentation(), (PropertyList::Dictionary{{"a", 2}, {"b", 3}}));
  })));
}

TEST_F(NSUserDefaultsTest, AFileThatCannotBeReadIsNotReplaced) {
  fs::create_directories(file("a.json"));
  auto defaults = open("a");
  EXPECT_EQ(defaults.integerForKey("a"), 0);
  defaults.setObject(1, "a");
  EXPECT_EQ(defaults.integerForKey("a"), 1);
  EXPECT_TRUE(fs::is_directory(file("a.json")));
  EXPECT_THAT(environment_.reports(), SizeIs(2));
}

TEST_F(NSUserDefaultsTest, AValueThatNoFileCanHoldIsRefusedAlone) {
  auto defaults = open("a");
  defaults.setObject(std::nan(""), "a");
  defaults.setObject("\xff", "b");
  defaults.setObject(1, "c");
  EXPECT_EQ(defaults.dictionaryRepresentation(), (PropertyList::Dictionary{{"c", 1}}));
  EXPECT_THAT(environment_.reports(), ElementsAre(HasSubstr("a.json"), HasSubstr("a.json")));
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
  for (int worker = 0; worker < 20; ++worker) {
    const std::string mine = "worker" + std::to_string(worker);
    EXPECT_EQ(open("a").integerForKey(mine), rounds);
    EXPECT_EQ(open("a").integerForKey(mine + ".shared"), rounds);
  }
  EXPECT_THAT(NSFileManager::contentsOfDirectory(environment_.directories().preferences).value(),
              ElementsAre(".a.json.lock", "a.json"));
}

TEST_F(NSUserDefaultsTest, AKilledWriterLeavesEveryAcknowledgedWrite) {
  for (int life = 0; life < 20; ++life) {
    int acknowledged[2];
    ASSERT_EQ(::pipe(acknowledged), 0);
    const pid_t writer = startProcess([&] {
      auto defaults = open("a");
      for (std::int64_t value = 1;; ++value) {
        defaults.setObject(value, "a");
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
    EXPECT_GE(open("a").integerForKey("a"), last);
    EXPECT_LE(open("a").integerForKey("a"), last + 1);
    open("a").setObject(0, "a");
  }
  EXPECT_THAT(environment_.reports(), IsEmpty());
}

}  // namespace
}  // namespace platform
