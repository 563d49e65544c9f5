#pragma once

#include <cstdio>
#include <thread>
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
