#include "Foundation/Process/ProcessLoop.h"

#include "Foundation/Process/MainLoopSources.h"
#include "Foundation/Process/TimedBlocks.h"

#include <algorithm>
#include <cassert>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <limits>
#include <mutex>
#include <thread>
#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

namespace platform {
namespace {

class ProcessMainLoop : public MainLoop {
 public:
  void post(Block block) override {
    const std::scoped_lock lock(mutex_);
    posted_.push_back(std::move(block));
    wake();
  }

  void watch(std::weak_ptr<MainLoopSource> source) override { sources_.add(std::move(source)); }

  [[nodiscard]] bool isCurrent() const override {
    static thread_local const bool isMainThread = gettid() == getpid();
    return isMainThread;
  }

  void run() override {
    assert(isCurrent() && "the main loop runs on the main thread");
    while (Block block = next()) block();
  }

  void stop() override {
    const std::scoped_lock lock(mutex_);
    stopping_ = true;
    wake();
  }

 private:
  /// Empty when the loop was stopped.
  Block next() {
    // Blocks that post blocks do not keep a source waiting.
    if (!sources_.isEmpty()) sources_.await(-1, 0);
    for (;;) {
      {
        const std::scoped_lock lock(mutex_);
        isWaiting_ = false;
        if (std::exchange(stopping_, false)) return nullptr;
        if (!posted_.empty()) {
          Block block = std::move(posted_.front());
          posted_.pop_front();
          return block;
        }
        isWaiting_ = true;
      }
      sources_.await(wake_, std::numeric_limits<double>::infinity());
      eventfd_t ignored = 0;
      eventfd_read(wake_, &ignored);
    }
  }

  /// With the lock held.
  void wake() {
    if (std::exchange(isWaiting_, false)) eventfd_write(wake_, 1);
  }

  const int wake_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  MainLoopSources sources_;
  std::mutex mutex_;
  std::deque<Block> posted_;
  bool isWaiting_ = false;
  bool stopping_ = false;
};

class TimerThread : public TimedWork {
 public:
  Token schedule(double mediaTime, Block block) override {
    const std::scoped_lock lock(mutex_);
    if (!std::exchange(started_, true)) std::thread([this] { keepTime(); }).detach();
    const bool isFirst = mediaTime < blocks_.firstDue();
    const Token token = blocks_.add(mediaTime, std::move(block));
    if (isFirst) wake_.notify_one();
    return token;
  }

  void cancel(Token token) override {
    Block dropped;
    const std::scoped_lock lock(mutex_);
    dropped = blocks_.take(token);
  }

 private:
  [[noreturn]] void keepTime() {
    for (;;) nextDue()();
  }

  Block nextDue() {
    constexpr double longestWait = 3600;  // keeps far and infinite times within the clock's range
    std::unique_lock lock(mutex_);
    for (;;) {
      const double now = processMediaTime();
      if (blocks_.firstDue() <= now) return blocks_.takeFirst();
      const std::chrono::duration<double> wait(std::min(blocks_.firstDue() - now, longestWait));
      wake_.wait_for(lock, wait);
    }
  }

  std::mutex mutex_;
  std::condition_variable wake_;
  TimedBlocks blocks_;
  bool started_ = false;
};

}  // namespace

MainLoop& processMainLoop() {
  static auto* loop = new ProcessMainLoop;
  return *loop;
}

TimedWork& processTimedWork() {
  static auto* timer = new TimerThread;
  return *timer;
}

double processMediaTime() {
  using Seconds = std::chrono::duration<double>;
  return Seconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace platform
