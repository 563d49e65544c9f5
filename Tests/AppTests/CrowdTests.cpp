#include "AppTests/Program.h"
#include "Foundation/Coding/PropertyList.h"
#include "Support/TaskStore.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>
#include <random>
#include <set>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velloro {
namespace {

using Clock = std::chrono::steady_clock;
using Entry = TaskLogEntryEntity;
using Temporal = TaskTemporalDataEntity;

constexpr int crowd = 40;
constexpr const char* tasks[] = {"Read", "Water", "Swim", "Sweets", "Guitar"};

struct Ended {
  int status = 0;
  bool wasKilled = false;
  std::string output;  // and what it complained of
};

/// Runs the program, and kills it if it is still there after so many milliseconds; -1 never does.
Ended runOrKill(std::vector<std::string> words, const std::string& file, int killAfter) {
  words.insert(words.begin(), VELLORO_PROGRAM);
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, 1, file.c_str(), O_CREAT | O_TRUNC | O_WRONLY, 0600);
  posix_spawn_file_actions_adddup2(&files, 1, 2);
  pid_t process = 0;
  EXPECT_EQ(posix_spawn(&process, VELLORO_PROGRAM, &files, nullptr, arguments.data(), environ), 0);
  posix_spawn_file_actions_destroy(&files);
  pollfd end{static_cast<int>(syscall(SYS_pidfd_open, process, 0)), POLLIN, 0};
  Ended ended;
  ended.wasKilled = poll(&end, 1, killAfter) == 0;
  if (ended.wasKilled) ::kill(process, SIGKILL);
  waitpid(process, &ended.status, 0);
  close(end.fd);
  std::ifstream written(file);
  ended.output.assign(std::istreambuf_iterator<char>(written), {});
  return ended;
}

/// Forty people who use one store at once, each a process for a command, some of which are killed.
class Crowd : public ::testing::Test {
 protected:
  std::vector<std::string> onStore(std::vector<std::string> words) const {
    for (const char* word : {"--json", "--zone", "Europe/Berlin", "--locale", "en_US", "--store"}) {
      words.emplace_back(word);
    }
    words.insert(words.end(), {folder_.string(), "--now", now_});
    return words;
  }

  void act(std::mt19937& random, const std::string& file) {
    const std::string task = tasks[random() % std::size(tasks)];
    const auto kind = random() % 20;
    const int killAfter = random() % 8 == 0 ? static_cast<int>(random() % 1500) : -1;
    const auto run = [&](std::vector<std::string> words) {
      return runOrKill(onStore(std::move(words)), file, killAfter);
    };
    if (kind < 9) return note(run({"log", "add", task}), &added_, nullptr);
    if (kind < 13) return note(run({"log", "undo", task}), &undone_, &killedUndos_);
    if (kind < 16) return note(run({"status"}), nullptr, nullptr);
    if (kind < 18)
      return note(run({"settings", "set", "startOfWeekDateComponent", "2"}), nullptr, nullptr);
    const std::string title = "More " + std::to_string(random());
    note(run({"task", "add", title, "--page", std::to_string(random() % 4)}), &added_, nullptr);
  }

  /// Whoever is told that something was done can rely on it.
  void note(const Ended& ended, std::set<std::string>* ids, int* killed) {
    const std::scoped_lock lock(mutex_);
    ++commands_;
    if (ended.wasKilled && killed != nullptr) ++*killed;
    if (!isDone(ended) || ids == nullptr) return;
    ids->insert(*PropertyList::fromJSON(ended.output)["uniqueId"].text());
  }
  static bool isDone(const Ended& ended) {
    EXPECT_TRUE(ended.wasKilled || WIFEXITED(ended.status))
        << "signal " << WTERMSIG(ended.status) << ": " << ended.output;
    const bool wentWell = WIFEXITED(ended.status) && WEXITSTATUS(ended.status) == 0;
    EXPECT_TRUE(ended.wasKilled || wentWell || ended.output.contains("nothing to undo"))
        << ended.output;
    return wentWell;
  }

  void spendADay(const std::string& now, Clock::duration time) {
    now_ = now;
    environment_.setNow(Date::fromISO8601(now).value());
    const auto end = Clock::now() + time;
    std::vector<std::jthread> people;
    for (unsigned person = 0; person < crowd; ++person) {
      people.emplace_back([this, person, end] {
        std::mt19937 random(person * 1000 + static_cast<unsigned>(commands_));
        while (Clock::now() < end) act(random, (folder_ / std::to_string(person)).string());
      });
    }
  }

  void checkAll() {
    const auto file = folder_ / "groups/group.velloro.app.today/Velloro-CloudKit.sqlite";
    EXPECT_EQ(runProgram("store check '" + file.string() + "'").exitCode, 0);
    const TaskStore store(NSPersistentStoreDescription::initWithURL(file));
    NSManagedObjectContext& context = *store.viewContext();
    std::set<std::string> found;
    for (const auto& task : *context.fetch<TaskEntity>(NSFetchRequest("Task"))) {
      found.insert(task->stored(TaskAttributes::uniqueId).value());
      checkTotals(*task, found);
      const auto row = task->value(TaskAttributes::taskTemporalData);
      const Date written = row->value(Temporal::lastUpdated).value();
      const TimeZone zone = task->taskCurrentTimeZone();
      task->updateTemporalData(YYYYMMDD::fromDate(task->startOfDay(), written, zone), zone);
      for (const auto& [name, value] : row->changedValues()) {
        ADD_FAILURE() << *task->value(TaskAttributes::title) << " " << name;
      }
    }
    int missing = 0;
    for (const std::string& id : added_) missing += !found.contains(id) && !undone_.contains(id);
    EXPECT_LE(missing, killedUndos_);
    for (const std::string& id : undone_) EXPECT_FALSE(found.contains(id)) << id;
  }

  /// Of each period, the entries in the order in which they count; none of them stands there twice.
  static void checkTotals(const TaskEntity& task, std::set<std::string>& found) {
    std::map<std::int32_t, double> totals;
    const TaskLogFetchRequest all{.direction = TaskLogFetchRequest::Direction::oldestToNewest};
    const auto entries = task.taskLog(all);
    for (const auto& entry : *entries) {
      double& total = totals[entry->stored(Entry::entryPeriodFrom)];
      total += entry->value(Entry::progress);
      EXPECT_DOUBLE_EQ(entry->value(Entry::progressTotal), total)
          << *task.value(TaskAttributes::title) << " " << entry->stored(Entry::entryDate);
      EXPECT_TRUE(found.insert(entry->stored(Entry::uniqueId).value()).second);
    }
  }

  VirtualEnvironment environment_;
  std::filesystem::path folder_ = environment_.directories().temporary / "crowd";
  std::string now_ = "2024-03-04T07:00:00Z";
  std::mutex mutex_;
  std::set<std::string> added_, undone_;
  int killedUndos_ = 0;
  std::atomic<int> commands_ = 0;
};

/// VELLORO_CROWD_SECONDS says for how long.
TEST_F(Crowd, LosesNothingAndAgrees) {
  const char* wanted = std::getenv("VELLORO_CROWD_SECONDS");
  const std::chrono::seconds time(wanted != nullptr ? std::atoi(wanted) : 9);
  std::filesystem::create_directories(folder_);
  const std::vector<std::vector<std::string>> kinds = {
      {},
      {"--partial", "8"},
      {"--mode", "aggregateOverWeek", "--partial", "3"},
      {"--negative"},
      {"--mode", "numberOfDaysInWeek", "--times", "4", "--partial", "2"}};
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    std::vector<std::string> words = {"task", "add", tasks[i]};
    words.insert(words.end(), kinds[i].begin(), kinds[i].end());
    note(runOrKill(onStore(words), (folder_ / "0").string(), -1), &added_, nullptr);
  }
  for (const char* now : {"2024-03-04T11:00:00Z", "2024-03-06T11:00:00Z", "2024-03-11T11:00:00Z"}) {
    spendADay(now, time / 3);
    checkAll();
  }
  EXPECT_GT(added_.size(), 50U);
  RecordProperty("commands", commands_);
}

}  // namespace
}  // namespace velloro
