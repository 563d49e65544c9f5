// From a change in one process to the view of another, which `velloro watch` prints: from a save,
// beside the save alone, and from the start of `velloro log add`, beside that command alone.

#include "CoreData/Context/NSPersistentContainer.h"
#include "Foundation/Process/Environment.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/VelloroModel.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velloro {
namespace {

using benchmark::State;

/// A store with one task in a folder of its own, and someone who watches it.
class WatchedStore {
 public:
  WatchedStore() {
    std::filesystem::remove_all(folder_);
    runProgram("task add Read");
    auto description = NSPersistentStoreDescription::initWithURL(
        folder_ / "groups" / "group.velloro.app.today" / "Velloro-CloudKit.sqlite");
    description.setOption(true, NSPersistentStoreRemoteChangeNotificationPostOptionKey);
    container_.setPersistentStoreDescriptions({std::move(description)});
    container_.loadPersistentStores([](const auto&, const ErrorPtr& error) {
      if (error) throw Error(*error);
    });
    watch();
  }
  ~WatchedStore() {
    kill(watcher_, SIGINT);
    waitpid(watcher_, nullptr, 0);
    close(lines_);
    std::filesystem::remove_all(folder_);
  }
  WatchedStore(const WatchedStore&) = delete;
  WatchedStore& operator=(const WatchedStore&) = delete;

  void runProgram(const std::string& command) const {
    const std::string line = std::string("'") + VELLORO_PROGRAM + "' " + command + " --store '" +
                             folder_.string() + "' >/dev/null";
    if (std::system(line.c_str()) != 0) throw std::runtime_error(command + " fails");
  }
  void save() {
    NSManagedObjectContext& context = *container_.viewContext();
    const auto entry = TaskLogEntryEntity::create(context);
    entry->setStored(TaskLogEntryEntity::entryDate, 20240307);
    if (const auto saved = context.save(); !saved) throw Error(*saved.error());
  }
  /// Returns when the watcher has told of a new log entry.
  void awaitEntry() {
    for (;;) {
      if (const auto end = told_.find('\n'); end != std::string::npos) {
        const std::string line = told_.substr(0, end);
        told_.erase(0, end + 1);
        if (line.find("\"TaskLogEntry\"") != std::string::npos) return;
        continue;
      }
      char buffer[4096];
      const ssize_t count = read(lines_, buffer, sizeof buffer);
      if (count <= 0) throw std::runtime_error("the watcher has ended");
      told_.append(buffer, static_cast<std::size_t>(count));
    }
  }

 private:
  /// Begins the watcher, and waits until it says that it watches.
  void watch() {
    int output[2], errors[2];
    if (pipe2(output, O_CLOEXEC) != 0 || pipe2(errors, O_CLOEXEC) != 0) std::abort();
    const std::string store = folder_.string();
    watcher_ = fork();
    if (watcher_ == 0) {
      dup2(output[1], STDOUT_FILENO);
      dup2(errors[1], STDERR_FILENO);
      execl(VELLORO_PROGRAM, "velloro", "watch", "--json", "--process", "widget", "--store",
            store.c_str(), nullptr);
      _exit(1);
    }
    close(output[1]), close(errors[1]);
    lines_ = output[0];
    char buffer[256];
    if (read(errors[0], buffer, sizeof buffer) <= 0) throw std::runtime_error("no watcher");
    close(errors[0]);
  }

  const std::filesystem::path folder_ = Environment::current().directories().temporary /
                                        ("velloro-watch-bench-" + std::to_string(getpid()));
  NSPersistentContainer container_{velloroModelName, velloroModel()};
  pid_t watcher_ = 0;
  int lines_ = -1;
  std::string told_;
};

void saveToView(State& state) {
  WatchedStore store;
  for (auto _ : state) {
    store.save();
    store.awaitEntry();
  }
}

void saveAlone(State& state) {
  WatchedStore store;
  for (auto _ : state) {
    store.save();
    state.PauseTiming();
    store.awaitEntry();
    state.ResumeTiming();
  }
}

void logAddToView(State& state) {
  WatchedStore store;
  for (auto _ : state) {
    store.runProgram("log add Read");
    store.awaitEntry();
  }
}

void logAddAlone(State& state) {
  WatchedStore store;
  for (auto _ : state) {
    store.runProgram("log add Read");
    state.PauseTiming();
    store.awaitEntry();
    state.ResumeTiming();
  }
}

BENCHMARK(saveToView)->Name("save_to_view/velloro")->UseRealTime();
BENCHMARK(saveAlone)->Name("save_to_view/save_alone")->UseRealTime();
BENCHMARK(logAddToView)->Name("log_add_to_view/velloro")->UseRealTime();
BENCHMARK(logAddAlone)->Name("log_add_to_view/command_alone")->UseRealTime();

}  // namespace
}  // namespace velloro
