#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Foundation/Text/String.h"
#include "OxLog/LeftOut.h"
#include "OxLog/LogManager.h"
#include "Support/Processes.h"

#include <fstream>
#include <set>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velloro {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;
namespace fs = std::filesystem;

/// Each step is a process of its own, which has a shared manager of its own.
class LogManagerTest : public ::testing::Test {
 protected:
  template <typename Step>
  static void inNewProcess(Step step) {
    EXPECT_TRUE(endedWell(startProcess([&] {
      step(LogManager::shared());
      LogManager::shared().flush();
    })));
  }
  static std::string unused() {
    ADD_FAILURE() << "a message was built for a line that is not written";
    return "";
  }

  static fs::path file() { return Environment::current().directories().caches / "debug.log"; }
  static std::vector<std::string> lines() {
    std::vector<std::string> result;
    std::ifstream stream(file());
    for (std::string line; std::getline(stream, line);) result.push_back(line);
    return result;
  }

  VirtualEnvironment environment_;
};

TEST_F(LogManagerTest, WritesChosenLinesWithTheirCallers) {
  inNewProcess([](LogManager& manager) {
    Log::notifications.error(unused);  // in a new installation nothing is chosen
    EXPECT_FALSE(fs::exists(file()));
    manager.enableDiskLogging({Log::notifications, Log::cache}, LogLevel::info);
    Log::notifications.debug(unused);
    Log::database.error(unused);
    Log::notifications.info([] { return "Updating badges..."; });
  });
  const int line = __LINE__ - 2;
  inNewProcess([](LogManager&) {  // the choice outlives the process that made it
    Log::notifications.debug(unused);
    Log::cache.error(Error("domain", 1, "The cache is full."));
    Log::cache.error(std::make_shared<const Error>("domain", 2, "It is gone."));
    Log::cache.error(ErrorPtr());
    logLeftOut(Log::cache, "Theme")({DecodingError::Kind::dataCorrupted, "mode", "No case."});
  });
  const auto place = [&](int offset) {
    return stringWithFormat("2024-03-07 12:00:00.000 [LogManagerTests:%d] TestBody() ",
                            line + offset);
  };
  EXPECT_THAT(lines(), ElementsAre("🚨 [Notifications, INFO] " + place(0) + "Updating badges...",
                                   "[Cache, ERROR] " + place(5) + "The cache is full.",
                                   "[Cache, ERROR] " + place(6) + "It is gone.",
                                   "[Cache, ERROR] " + place(7) + "unknown error",
                                   "[Cache, ERROR] " + place(8) + "Theme: mode: No case."));
}

TEST_F(LogManagerTest, EachCategoryIsChosenByItsRawValueAlone) {
  ASSERT_EQ(allCases<Log::Category>().size(), 20U);
  for (const auto chosen : allCases<Log::Category>()) {
    NSUserDefaults::standardUserDefaults().setObjects(
        {{"__lm.logs", PropertyList::Array{rawValue(chosen), "podcasts"}}, {"__lm.level", "?"}});
    inNewProcess([&](LogManager& manager) {
      for (const auto other : allCases<Log::Category>()) {
        EXPECT_FALSE(manager.shouldLogToDisk({other}, LogLevel::info));
        EXPECT_EQ(manager.shouldLogToDisk({other}, LogLevel::error), other == chosen);
      }
    });
  }
}

TEST_F(LogManagerTest, ALargeFileIsClearedBeforeAProcessesFirstLineOnly) {
  fs::create_directories(file().parent_path());
  for (const std::uintmax_t size : {9999999U, 10000000U, 20000000U}) {
    std::ofstream(file()).put('x');
    fs::resize_file(file(), size);
    inNewProcess([](LogManager& manager) {
      manager.enableDiskLogging({Log::general}, LogLevel::error);
      Log::general.error([] { return "first"; });
      manager.flush();
      fs::resize_file(file(), 10000000);
      Log::general.error([] { return "second"; });
    });
    EXPECT_GT(fs::file_size(file()), 10000000U);
    EXPECT_EQ(std::ifstream(file()).get() == 'x', size < 10000000U) << size;
  }
}

TEST_F(LogManagerTest, TakesLinesFromTheWatch) {
  const auto packet = [](const char* category, const char* level) {
    return Data(stringWithFormat(
        R"json({"date":731491501.25,"category":"%s","level":"%s","message":"m",)json"
        R"json("filename":"/w/Extension.swift","function":"session(_:didReceive:)","line":7})json",
        category, level));
  };
  inNewProcess([&](LogManager& manager) {
    manager.enableDiskLogging({Log::workout, Log::watchConnectivity}, LogLevel::info);
    manager.receiveFromWatch(packet("workout", "info"));
    manager.receiveFromWatch(packet("workout", "debug"));
    manager.receiveFromWatch(packet("music", "error"));
    manager.receiveFromWatch(packet("podcasts", "error"));
    manager.receiveFromWatch(Data("{"));
  });
  const auto isFailure = StartsWith("⌚️ [Watch Connectivity, ERROR] 2024-03-07 12:00:00.000 ");
  EXPECT_THAT(lines(), ElementsAre("💪 [WATCH, Workout, INFO] 2024-03-07 9:05:01.250 [Extension:7] "
                                   "session(_:didReceive:) m",
                                   AllOf(isFailure, HasSubstr("category"), HasSubstr("podcasts")),
                                   isFailure));
}

TEST_F(LogManagerTest, AFileThatCannotBeOpenedLosesOnlyItsLines) {
  inNewProcess([&](LogManager& manager) {
    const fs::path folder = environment_.directories().caches;
    manager.enableDiskLogging({Log::general}, LogLevel::debug);
    std::ofstream(folder) << "in the way";
    Log::general.debug([] { return "lost"; });
    manager.flush();
    fs::remove(folder);
    Log::general.debug([] { return "cleared away"; });
    manager.flush();
    fs::remove_all(folder);
    Log::general.debug([] { return "no \xff text"; });
    Log::general.debug([] { return "written"; });
  });
  EXPECT_THAT(lines(), ElementsAre(HasSubstr("written")));
}

TEST_F(LogManagerTest, ProcessesAndThreadsWriteEveryLineOnceAndWhole) {
  constexpr int rounds = 100;
  inNewProcess(
      [](LogManager& manager) { manager.enableDiskLogging({Log::database}, LogLevel::debug); });
  workInProcesses(2, 10, [](int worker) {
    for (int round = 0; round < rounds; ++round) {
      Log::database.debug([&] { return stringWithFormat("<%d/%d>", worker, round); });
    }
    LogManager::shared().flush();
  });
  std::set<std::string> messages;
  for (const std::string& line : lines()) {
    EXPECT_THAT(line,
                StartsWith("🗄 [Database, DEBUG] 2024-03-07 12:00:00.000 [LogManagerTests:"));
    messages.insert(line.substr(line.find('<')));
  }
  EXPECT_EQ(messages.size(), 20U * rounds);
  EXPECT_EQ(lines().size(), 20U * rounds);
}

}  // namespace
}  // namespace velloro
