#include "Foundation/Dispatch/WorkerPool.h"

#include "Foundation/Process/ProcessLoop.h"

#include <algorithm>
#include <system_error>
#include <thread>
#include <utility>

namespace platform {

WorkerPool& WorkerPool::shared() {
  static auto* pool = new WorkerPool;
  return *pool;
}

WorkerPool::WorkerPool() : promptWorkers_(std::max(2U, std::thread::hardware_concurrency())) {}

void WorkerPool::submit(QualityOfService urgency, Block job) {
  const std::scoped_lock lock(mutex_);
  jobs_[static_cast<std::size_t>(urgency)].push_back(std::move(job));
  ++waitingJobs_;
  if (waitingJobs_ <= idleWorkers_) {
    wake_.notify_one();
  } else if (workers_ < promptWorkers_) {
    startWorker();
  } else {
    watchBacklog();
  }
}

void WorkerPool::startWorker() {
  try {
    std::thread([this] { work(); }).detach();
    ++workers_;
  } catch (const std::system_error&) {
    if (workers_ == 0) throw;  // otherwise those that are there do the work
  }
}

void WorkerPool::work() {
  for (;;) {
    next()();
    ++jobsEnded_;
  }
}

Block WorkerPool::next() {
  std::unique_lock lock(mutex_);
  ++idleWorkers_;
  wake_.wait(lock, [&] { return waitingJobs_ > 0; });
  --idleWorkers_;
  --waitingJobs_;
  auto& mostUrgent = *std::ranges::find_if_not(jobs_, &std::deque<Block>::empty);
  Block job = std::move(mostUrgent.front());
  mostUrgent.pop_front();
  return job;
}

void WorkerPool::watchBacklog() {
  constexpr double patience = 0.005;
  if (std::exchange(watching_, true)) return;
  jobsEndedAtWatch_ = jobsEnded_;
  processTimedWork().schedule(processMediaTime() + patience, [this] { relieveBacklog(); });
}

void WorkerPool::relieveBacklog() {
  const std::scoped_lock lock(mutex_);
  watching_ = false;
  if (waitingJobs_ <= idleWorkers_) return;
  if (jobsEnded_ == jobsEndedAtWatch_ && workers_ < mostWorkers) startWorker();
  watchBacklog();
}

void WorkerPool::workEnded() {
  if (--unfinished_ == 0) wakeWaiter();
}

void WorkerPool::waitUntilIdle(const std::function<bool()>& interrupted) {
  std::unique_lock lock(idleMutex_);
  idle_.wait(lock, [&] { return unfinished_ == 0 || interrupted(); });
}

void WorkerPool::wakeWaiter() {
  // Taking the lock orders the change before or after the waiter's look, never in between.
  { const std::scoped_lock lock(idleMutex_); }
  idle_.notify_all();
}

}  // namespace platform
