#include "Foundation/Files/FileLock.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Support/Processes.h"

#include <cerrno>
#include <csignal>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace platform {
namespace {

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

  VirtualEnvironment environment_;
};

TEST_F(NSFileManagerTest, WritesReplaceTheContentAndKeepThePermissions) {
  ASSERT_TRUE(NSFileManager::write("old and longer", file("a")));
  ASSERT_EQ(::chmod(file("a").c_str(), 0640), 0);
  ASSERT_TRUE(NSFileManager::write("a long beginning that a killed writer left", file(".a.tmp")));
  ASSERT_TRUE(NSFileManager::write(std::string_view("new\0\n", 5), file("a")));
  EXPECT_EQ(NSFileManager::contents(file("a")).value(), std::string_view("new\0\n", 5));
  EXPECT_EQ(static_cast<unsigned>(fs::status(file("a")).permissions()), 0640U);
  EXPECT_THAT(names(), ElementsAre("a"));
}

TEST_F(NSFileManagerTest, WhatIsMadeIsTheOwnersAloneUnlessAskedOtherwise) {
  const auto modeOf = [&](const char* name) {
    return static_cast<unsigned>(fs::status(file(name)).permissions());
  };
  const mode_t usual = ::umask(0);
  for (const mode_t mask : {0, 022, 0777}) {
    ::umask(mask);
    fs::remove_all(file("d"));
    fs::remove_all(file("asked"));
    ASSERT_TRUE(NSFileManager::createDirectory(file("d/e")));
    ASSERT_TRUE(NSFileManager::write("1", file("d/written")));
    ASSERT_TRUE(NSFileManager::createFile(file("d/made")));
    ASSERT_TRUE(FileLock::shared(file("d/lock")));
    for (const char* folder : {"d", "d/e"}) EXPECT_EQ(modeOf(folder), 0700U) << folder;
    for (const char* made : {"d/written", "d/made", "d/lock"}) EXPECT_EQ(modeOf(made), 0600U);
    ASSERT_TRUE(NSFileManager::write("1", file("asked"), NewItemAccess::byUmask));
    EXPECT_EQ(modeOf("asked"), 0666U & ~mask);
    ASSERT_EQ(::chmod(file("d").c_str(), 0755), 0);
    ASSERT_TRUE(NSFileManager::createDirectory(file("d/e")));
    EXPECT_EQ(modeOf("d"), 0755U) << "it was there";
  }
  ::umask(usual);
}

TEST_F(NSFileManagerTest, FailuresNameTheFileAndTheReasonAndLeaveNothing) {
  ASSERT_TRUE(NSFileManager::write("old", file("a")));
  ASSERT_TRUE(NSFileManager::createDirectory(file("d/e")));
  const auto errorOf = [](const auto& result) { return result ? nullptr : result.error(); };
  const std::tuple<ErrorPtr, int, const char*> cases[] = {
      {errorOf(NSFileManager::write("x", file("a/b"))), ENOTDIR, "a/.b.tmp\": Not a directory"},
      {errorOf(NSFileManager::write("x", file("d"))), EISDIR, "/d\": Is a directory"},
      {errorOf(NSFileManager::append("x", file("b"))), ENOENT, "/b\": No such file"},
      {errorOf(NSFileManager::contents(file("d"))), EISDIR, "/d\""},
      {errorOf(NSFileManager::size(file("b"))), ENOENT, "/b\""},
      {errorOf(NSFileManager::contentsOfDirectory(file("a"))), ENOTDIR, "/a\""},
      {errorOf(NSFileManager::createDirectory(file("a/b"))), ENOTDIR, "/a/b\""},
      {errorOf(NSFileManager::removeItem(file("b"))), ENOENT, "/b\""},
      {errorOf(NSFileManager::copyItem(file("b"), file("c"))), ENOENT, "/b\""},
      {errorOf(NSFileManager::copyItem(file("d"), file("a"))), EEXIST, "/a\""},
      {errorOf(NSFileManager::moveItem(file("d"), file("a"))), EEXIST, "/a\""},
      {errorOf(NSFileManager::replaceItem(file("a"), file("b"))), ENOENT, "/b\""}};
  for (const auto& [error, reason, named] : cases) {
    ASSERT_TRUE(error) << named;
    EXPECT_EQ(error->code(), reason) << error->localizedDescription();
    EXPECT_THAT(error->localizedDescription(), HasSubstr(named));
  }
  const auto longName = NSFileManager::contents(std::string(9000, 'x'));
  EXPECT_LT(longName.error()->localizedDescription().size(), 4300U);
  EXPECT_TRUE(endedWell(startProcess([&] {  // a full disk
    const rlimit limit{.rlim_cur = 10, .rlim_max = 10};
    std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    EXPECT_EQ(NSFileManager::write("more than ten bytes", file("a")).error()->code(), EFBIG);
    EXPECT_EQ(NSFileManager::append("more than ten bytes", file("a")).error()->code(), EFBIG);
  })));
  EXPECT_EQ(NSFileManager::contents(file("a")).value(), "old");
  EXPECT_THAT(names(), ElementsAre("a", "d"));
}

TEST_F(NSFileManagerTest, CopiesMovesReplacesAndRemoves) {
  ASSERT_TRUE(NSFileManager::createDirectory(file("d/e")));
  ASSERT_TRUE(NSFileManager::write("1", file("d/e/f")));
  ASSERT_TRUE(NSFileManager::append("2", file("d/e/f")));
  ASSERT_TRUE(NSFileManager::copyItem(file("d"), file("copy")));
  ASSERT_TRUE(NSFileManager::moveItem(file("copy/e"), file("moved")));
  EXPECT_EQ(NSFileManager::contents(file("moved/f")).value(), "12");

  const fs::path otherDisk = "/dev/shm/velloro-" + std::to_string(::getpid());
  const fs::path elsewhere = NSFileManager::createDirectory(otherDisk) ? otherDisk : file("d");
  ASSERT_TRUE(NSFileManager::write("345", elsewhere / "new"));
  EXPECT_EQ(NSFileManager::moveItem(elsewhere / "new", file("moved")).error()->code(), EEXIST);
  ASSERT_TRUE(NSFileManager::moveItem(elsewhere / "new", elsewhere / "newer"));
  ASSERT_TRUE(NSFileManager::replaceItem(file("d/e/f"), elsewhere / "newer"));
  EXPECT_EQ(NSFileManager::size(file("d/e/f")).value(), 3U);
  EXPECT_TRUE(NSFileManager::removeItem(elsewhere));
  (void)NSFileManager::removeItem(file("d"));
  EXPECT_THAT(names(), ElementsAre("copy", "moved"));
}

TEST_F(NSFileManagerTest, GroupContainersAreMadeOnDemand) {
  const auto group = NSFileManager::containerURLForSecurityApplicationGroupIdentifier("group.a");
  EXPECT_TRUE(group && NSFileManager::exists(*group));
  fs::remove_all(environment_.directories().groupContainers);
  ASSERT_TRUE(NSFileManager::createFile(environment_.directories().groupContainers));
  for (const char* unusable : {"", "..", ".", "a/b", "group.in-the-way"}) {
    EXPECT_FALSE(NSFileManager::containerURLForSecurityApplicationGroupIdentifier(unusable));
  }
}

TEST_F(NSFileManagerTest, ProcessesAndThreadsNeitherMixContentsNorShareALock) {
  ASSERT_TRUE(NSFileManager::write("0", file("count")));
  workInProcesses(2, 4, [&](int worker) {
    const std::string whole(5000U + static_cast<unsigned>(worker), 'x');
    for (int round = 0; round < 50; ++round) {
      ASSERT_TRUE(NSFileManager::write(whole, file("contents")));
      EXPECT_GE(NSFileManager::contents(file("contents")).value().size(), 5000U);
      const auto lock = FileLock::exclusive(file("lock"));
      const int count = std::stoi(NSFileManager::contents(file("count")).value());
      ASSERT_TRUE(NSFileManager::write(std::to_string(count + 1), file("count")));
      // Those who wait for this very file must notice that it is no longer the lock.
      EXPECT_TRUE(count % 7 != 0 || NSFileManager::removeItem(file("lock")));
    }
  });
  EXPECT_EQ(NSFileManager::contents(file("count")).value(), "400");
  EXPECT_THAT(names(), ElementsAre("contents", "count"));  // the 399th takes the lock file away
}

}  // namespace
}  // namespace platform
