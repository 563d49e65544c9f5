#pragma once

#include "Foundation/Dispatch/Block.h"
#include "Foundation/Dispatch/DispatchQueue.h"

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>

namespace platform {

/// The threads behind all background queues. The standard library has no pool, and those of other
/// libraries have a fixed number of threads, where blocks that wait for each other stop all work,
/// and join them at exit; none lets a virtual clock wait until all that was handed in has ended. So
/// this one is our own.
///
/// It starts with none, grows at once to the number of processors, and beyond that slowly, while
/// work waits and no worker comes to an end: so blocked workers hold up others for a few
/// milliseconds. Workers never end; the pool is never destroyed, so that process exit neither waits
/// for them nor pulls anything from under them.
class WorkerPool {
 public:
  [[nodiscard]] static WorkerPool& shared();

  /// Runs a job on a worker as soon as there is one; a more urgent job goes first.
  void submit(QualityOfService urgency, Block job);

  /// Called before a block is submitted, and after it has run and is destroyed.
  void workBegan() { ++unfinished_; }
  void workEnded();
  /// Returns when every submitted block has ended, or when `interrupted` returns true; it is called
  /// again at each `wakeWaiter`.
  void waitUntilIdle(const std::function<bool()>& interrupted);
  void wakeWaiter();

 private:
  WorkerPool();
  void startWorker();
  [[noreturn]] void work();
  Block next();
  void watchBacklog();
  void relieveBacklog();

  static constexpr std::size_t mostWorkers = 256;

  std::mutex mutex_;
  std::condition_variable wake_;
  std::array<std::deque<Block>, 5> jobs_;  // by quality of service
  std::size_t waitingJobs_ = 0;
  std::size_t idleWorkers_ = 0;
  std::size_t workers_ = 0;
  std::size_t promptWorkers_;  // as many as are started without hesitation
  std::atomic<std::uint64_t> jobsEnded_ = 0;
  std::uint64_t jobsEndedAtWatch_ = 0;
  bool watching_ = false;

  std::atomic<std::uint64_t> unfinished_ = 0;
  std::mutex idleMutex_;
  std::condition_variable idle_;
};

}  // namespace platform
