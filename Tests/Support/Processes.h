#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

/// Starts a child process that does `work()` and ends. Call it while there is but one thread. A
/// failed expectation in the child shows in its exit status.
template <typename Work>
pid_t startProcess(Work work) {
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    work();
    std::fflush(nullptr);  // the messages of what failed
    _exit(::testing::Test::HasFailure() ? 1 : 0);
  }
  return child;
}

/// Whether the child ended by itself and nothing failed in it.
inline bool endedWell(pid_t child) {
  int status = 0;
  return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// Does `work(worker)` for the workers 0..<processes × threads, all at the same time, that many
/// threads in each of the processes.
template <typename Work>
void workInProcesses(int processes, int threads, Work work) {
  std::vector<pid_t> children;
  for (int process = 0; process < processes; ++process) {
    children.push_back(startProcess([&] {
      std::vector<std::jthread> running;
      for (int thread = 0; thread < threads; ++thread) {
        running.emplace_back(work, process * threads + thread);
      }
    }));
  }
  for (const pid_t child : children) EXPECT_TRUE(endedWell(child));
}

/// A line between two processes, a number at a time.
class Pipe {
 public:
  Pipe() { EXPECT_EQ(pipe(ends_), 0); }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe() { close(ends_[0]), close(ends_[1]); }

  void closeWriting() { close(std::exchange(ends_[1], -1)); }
  void send(std::int64_t number) { EXPECT_EQ(write(ends_[1], &number, sizeof number), 8); }
  /// Absent when the other has ended.
  std::optional<std::int64_t> receive() {
    std::int64_t number = 0;
    return read(ends_[0], &number, sizeof number) == 8 ? std::optional(number) : std::nullopt;
  }

 private:
  int ends_[2] = {};
};
