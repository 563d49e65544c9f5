#include "Foundation/Process/VirtualTime.h"

#include "Foundation/Dispatch/WorkerPool.h"

#include <algorithm>
#include <cassert>
#include <limits>
#include <utility>

namespace platform {
namespace {

/// A wall clock instant is known to about a tenth of a microsecond, and a sum of delays need not
/// meet the delay of the sum: what is due this shortly after the end of a step belongs to it.
constexpr double tolerance = 1e-6;

}  // namespace

Date VirtualTime::now() const {
  const std::scoped_lock lock(mutex_);
  return now_ + (mediaTime_ - nowSetAt_);
}

double VirtualTime::mediaTime() const {
  const std::scoped_lock lock(mutex_);
  return mediaTime_;
}

void VirtualTime::setNow(Date now) {
  const std::scoped_lock lock(mutex_);
  now_ = now;
  nowSetAt_ = mediaTime_;
}

void VirtualTime::advance(TimeInterval seconds) {
  assert(isCurrent() && "virtual time moves on the main thread");
  const double end = mediaTime() + seconds;
  while (step(end)) {
  }
  const std::scoped_lock lock(mutex_);
  mediaTime_ = std::max(mediaTime_, end);
}

void VirtualTime::run() {
  assert(isCurrent() && "the main loop runs on the main thread");
  const auto stopped = [this] {
    const std::scoped_lock lock(mutex_);
    return std::exchange(stopping_, false);
  };
  do {
    awaitBackgroundWork();
  } while (!stopped() && step(std::numeric_limits<double>::max()));
}

void VirtualTime::stop() {
  const std::scoped_lock lock(mutex_);
  stopping_ = true;
}

/// Runs one block; false when nothing is left to do until `end`.
bool VirtualTime::step(double end) {
  if (!sources_.isEmpty()) sources_.await(-1, 0);
  awaitBackgroundWork();
  Block block = take(end);
  if (!block) return false;
  block();
  return true;
}

void VirtualTime::awaitBackgroundWork() {
  // A posted block is run at once: a background block may be waiting for it.
  WorkerPool::shared().waitUntilIdle([this] {
    const std::scoped_lock lock(mutex_);
    return !posted_.empty();
  });
}

Block VirtualTime::take(double end) {
  const std::scoped_lock lock(mutex_);
  if (!posted_.empty()) {
    Block block = std::move(posted_.front());
    posted_.pop_front();
    return block;
  }
  const double due = timed_.firstDue();
  if (due > end + tolerance) return nullptr;
  mediaTime_ = std::max(mediaTime_, due);
  return timed_.takeFirst();
}

void VirtualTime::close() {
  std::deque<Block> posted;
  TimedBlocks timed;
  {
    const std::scoped_lock lock(mutex_);
    closed_ = true;
    posted.swap(posted_);
    std::swap(timed, timed_);
  }
  posted.clear();
  timed = {};
  awaitBackgroundWork();
}

void VirtualTime::post(Block block) {
  {
    const std::scoped_lock lock(mutex_);
    if (closed_) return;
    posted_.push_back(std::move(block));
  }
  WorkerPool::shared().wakeWaiter();
}

bool VirtualTime::isCurrent() const {
  return std::this_thread::get_id() == mainThread_;
}

TimedWork::Token VirtualTime::schedule(double mediaTime, Block block) {
  const std::scoped_lock lock(mutex_);
  if (closed_) return {};
  return timed_.add(mediaTime, std::move(block));
}

void VirtualTime::cancel(Token token) {
  Block dropped;
  const std::scoped_lock lock(mutex_);
  dropped = timed_.take(token);
}

}  // namespace platform
