#include "Foundation/Environment.h"
#include "Foundation/FileLock.h"
#include "Foundation/NSFileManager.h"
#include "Foundation/TestEnvironment.h"
#include "Support/Processes.h"

#include <cerrno>
#include <csignal>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace platform {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

class NSFileManagerTest : public ::testing::Test {
 protected:
  [[nodiscard]] fs::path file(const char* name) const {
    return environment_.directories().temporary / name;
  }
  [[nodiscard]] std::vector<std::string> names() const {
    return NSFileManager::contentsOfDirectory(environment_.directories().temporary).value();
  }

  TestEnvironment environment_;
};

TEST_F(NSFileManagerTest, WritesReplaceTheContentAndKeepThePermissions) {
  ASSERT_TRUE(NSFileManager::write("old and longer", file("a")));
  ASSERT_EQ(::chmod(file("a").c_str(), 0640), 0);
  ASSERT_TRUE(NSFileManager::write(std::string_view("new\0\n", 5), file("a")));
  EXPECT_EQ(NSFileManager::contents(file("a")).value(), std::string_view("new\0\n", 5));
  EXPECT_EQ(static_cast<unsigned>(fs::status(file("a")).permissions()), 0640U);
  EXPECT_THAT(names(), ElementsAre("a"));
}

TEST_F(NSFileManagerTest, TakesOverWhatAKilledWriterLeft) {
  ASSERT_TRUE(NSFileManager::write("a long beginning of a lost content", file(".a.tmp")));
  ASSERT_TRUE(NSFileManager::write("short", file("a")));
  EXPECT_EQ(NSFileManager::contents(file("a")).value(), "short");
  EXPECT_THAT(names(), ElementsAre("a"));
}

TEST_F(NSFileManagerTest, FailuresNameTheFileAndTheReasonAndLeaveNothing) {
  ASSERT_TRUE(NSFileManager::write("old", file("a")));
  ASSERT_TRUE(NSFileManager::createDirectory(file("d/e")));
  const auto voided = [](const auto& result) -> Result<void> {
    if (!result) return std::unexpected(result.error());
    return {};
  };
  const struct {
    Result<void> result;
    int reason;
    const char* named;
  } cases[] = {
      {NSFileManager::write("x", file("a/b")), ENOTDIR, "a/.b.tmp\": Not a directory"},
      {NSFileManager::write("x", file("missing/b")), ENOENT, "missing/.b.tmp"},
      {NSFileManager::write("x", file("d")), EISDIR, "/d\": Is a directory"},
      {NSFileManager::append("x", file("b")), ENOENT, "/b\": No such file"},
      {voided(NSFileManager::contents(file("b"))), ENOENT, "/b\""},
      {voided(NSFileManager::contents(file("d"))), EISDIR, "/d\""},
      {voided(NSFileManager::size(file("b"))), ENOENT, "/b\""},
      {voided(NSFileManager::contentsOfDirectory(file("a"))), ENOTDIR, "/a\""},
      {NSFileManager::createDirectory(file("a/b")), ENOTDIR, "/a/b\""},
      {NSFileManager::removeItem(file("b")), ENOENT, "/b\""},
      {NSFileManager::copyItem(file("b"), file("c")), ENOENT, "/b\""},
      {NSFileManager::copyItem(file("d"), file("a")), EEXIST, "/a\""},
      {NSFileManager::moveItem(file("d"), file("a")), EEXIST, "/a\""},
      {NSFileManager::replaceItem(file("a"), file("b")), ENOENT, "/b\""},
  };
  for (const auto& [result, reason, named] : cases) {
    ASSERT_FALSE(result) << named;
    EXPECT_EQ(result.error()->code(), reason) << result.error()->localizedDescription();
    EXPECT_THAT(result.error()->localizedDescription(), HasSubstr(named));
  }
  EXPECT_EQ(NSFileManager::contents(file("a")).value(), "old");
  EXPECT_THAT(names(), ElementsAre("a", "d"));
}

TEST_F(NSFileManagerTest, AFullDiskLeavesTheOldContent) {
  ASSERT_TRUE(NSFileManager::write("old", file("a")));
  EXPECT_TRUE(endedWell(startProcess([&] {
    const rlimit limit{.rlim_cur = 10, .rlim_max = 10};
    std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    const auto written = NSFileManager::write("more than ten bytes", file("a"));
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error()->code(), EFBIG);
  })));
  EXPECT_EQ(NSFileManager::contents(file("a")).value(), "old");
  EXPECT_THAT(names(), ElementsAre("a"));
}

TEST_F(NSFileManagerTest, CopiesMovesReplacesAndRemoves) {
  ASSERT_TRUE(NSFileManager::createDirectory(file("d/e")));
  ASSERT_TRUE(NSFileManager::write("1", file("d/e/f")));
  ASSERT_TRUE(NSFileManager::append("2", file("d/e/f")));
  ASSERT_TRUE(NSFileManager::copyItem(file("d"), file("copy")));
  ASSERT_TRUE(NSFileManager::moveItem(file("copy/e"), file("moved")));
  EXPECT_EQ(NSFileManager::contents(file("moved/f")).value(), "12");
  EXPECT_EQ(NSFileManager::size(file("d/e/f")).value(), 2U);

  ASSERT_TRUE(NSFileManager::write("3", file("new")));
  ASSERT_TRUE(NSFileManager::replaceItem(file("d/e/f"), file("new")));
  EXPECT_EQ(NSFileManager::contents(file("d/e/f")).value(), "3");
  ASSERT_TRUE(NSFileManager::removeItem(file("d")));
  EXPECT_FALSE(NSFileManager::exists(file("d/e/f")));
  EXPECT_THAT(names(), ElementsAre("copy", "moved"));
}

TEST_F(NSFileManagerTest, MovesBetweenFileSystems) {
  const fs::path elsewhere = "/dev/shm/velloro-" + std::to_string(::getpid());
  if (!NSFileManager::createDirectory(elsewhere)) GTEST_SKIP() << "no second file system";
  ASSERT_TRUE(NSFileManager::write("1", elsewhere / "a"));
  ASSERT_TRUE(NSFileManager::write("2", elsewhere / "b"));
  EXPECT_TRUE(NSFileManager::moveItem(elsewhere / "a", file("a")));
  EXPECT_EQ(NSFileManager::moveItem(elsewhere / "b", file("a")).error()->code(), EEXIST);
  EXPECT_EQ(NSFileManager::contents(file("a")).value(), "1");
  EXPECT_TRUE(NSFileManager::replaceItem(file("a"), elsewhere / "b"));
  EXPECT_EQ(NSFileManager::contents(file("a")).value(), "2");
  EXPECT_THAT(names(), ElementsAre("a"));
  EXPECT_THAT(NSFileManager::contentsOfDirectory(elsewhere).value(), IsEmpty());
  EXPECT_TRUE(NSFileManager::removeItem(elsewhere));
}

TEST_F(NSFileManagerTest, GroupContainersAreMadeOnDemand) {
  const auto group = NSFileManager::containerURLForSecurityApplicationGroupIdentifier("group.a");
  ASSERT_TRUE(group);
  EXPECT_TRUE(NSFileManager::exists(*group));
  for (const char* unusable : {"", "..", ".", "a/b"}) {
    EXPECT_FALSE(NSFileManager::containerURLForSecurityApplicationGroupIdentifier(unusable))
        << unusable;
  }
  fs::remove_all(environment_.directories().groupContainers);
  ASSERT_TRUE(NSFileManager::write("in the way", environment_.directories().groupContainers));
  EXPECT_FALSE(NSFileManager::containerURLForSecurityApplicationGroupIdentifier("group.a"));
}

TEST_F(NSFileManagerTest, ReadersSeeWholeContentsOfManyWriters) {
  ASSERT_TRUE(NSFileManager::write("", file("a")));
  workInProcesses(2, 3, [&](int worker) {
    const std::string mine(static_cast<std::size_t>(1000 + worker),
                           static_cast<char>('a' + worker));
    for (int round = 0; round < 20; ++round) {
      ASSERT_TRUE(NSFileManager::write(mine, file("a")));
      const std::string seen = NSFileManager::contents(file("a")).value();
      EXPECT_EQ(seen, std::string(static_cast<std::size_t>(1000 + seen[0] - 'a'), seen[0]));
    }
  });
  EXPECT_THAT(names(), ElementsAre("a"));
}

TEST_F(NSFileManagerTest, LocksKeepOutThreadsAndProcesses) {
  ASSERT_TRUE(NSFileManager::write("0", file("count")));
  workInProcesses(2, 4, [&](int) {
    for (int round = 0; round < 50; ++round) {
      const auto lock = FileLock::exclusive(file("lock"));
      ASSERT_TRUE(lock);
      const int count = std::stoi(NSFileManager::contents(file("count")).value());
      ASSERT_TRUE(NSFileManager::write(std::to_string(count + 1), file("count")));
      // Those who wait for this very file must notice that it is no longer the lock.
      if (count % 7 == 0) {
        ASSERT_TRUE(NSFileManager::removeItem(file("lock")));
      }
    }
  });
  EXPECT_EQ(NSFileManager::contents(file("count")).value(), "400");
}

}  // namespace
}  // namespace platform
