#pragma once

#include "Foundation/Dispatch/Block.h"

#include <compare>
#include <cstdint>
#include <limits>
#include <memory>

namespace platform {

/// What the main loop waits for beside its blocks: a descriptor, such as a socket or a timer. Both
/// members are called on the main thread.
class MainLoopSource {
 public:
  struct Wait {
    int descriptor = -1;
    bool forWriting = false;                                   ///< Beside reading.
    double seconds = std::numeric_limits<double>::infinity();  ///< The longest that it may take.
  };

  virtual ~MainLoopSource() = default;
  MainLoopSource() = default;
  MainLoopSource(const MainLoopSource&) = delete;
  MainLoopSource& operator=(const MainLoopSource&) = delete;

  /// Asked each time before the loop waits.
  [[nodiscard]] virtual Wait wait() = 0;
  /// The descriptor is ready, or has an error, or the time is over.
  virtual void proceed() = 0;
};

/// The blocks that wait for the main thread. `DispatchQueue::main()` is the usual way to it; the
/// program's main function runs it:
///
///     MainLoop& loop = Environment::current().mainLoop();
///     DispatchQueue::global().async([&loop] { loop.stop(); });
///     loop.run();                                 // returns when the work has called stop()
class MainLoop {
 public:
  virtual ~MainLoop() = default;
  MainLoop() = default;
  MainLoop(const MainLoop&) = delete;
  MainLoop& operator=(const MainLoop&) = delete;

  /// Adds a block after those already posted. From any thread.
  virtual void post(Block block) = 0;
  /// From now on `run` also waits for the source, for as long as it exists. On the main thread.
  virtual void watch(std::weak_ptr<MainLoopSource> source) = 0;
  /// Whether the caller is the main thread.
  [[nodiscard]] virtual bool isCurrent() const = 0;

  /// Runs posted blocks one after the other until `stop`, and waits while there are none. On the
  /// main thread only. In virtual time, the clock moves from one due event to the next by itself,
  /// and the loop also ends when no event is left.
  virtual void run() = 0;
  /// Ends `run` after the current block; a later `run` continues with the posted blocks. If it is
  /// called before `run`, the next `run` returns at once. From any thread.
  virtual void stop() = 0;
};

/// Blocks that wait for an instant of the media clock. They run on the thread that keeps the time
/// and hold up all others meanwhile, so they do no more than hand work to a queue.
class TimedWork {
 public:
  /// Names one scheduled block, uniquely in the process. Sorted by due time, then by age.
  struct Token {
    double due = 0;
    std::uint64_t sequence = 0;

    auto operator<=>(const Token&) const = default;
  };

  virtual ~TimedWork() = default;
  TimedWork() = default;
  TimedWork(const TimedWork&) = delete;
  TimedWork& operator=(const TimedWork&) = delete;

  /// Runs the block at `mediaTime` of the media clock, or at once when that has passed. From any
  /// thread.
  virtual Token schedule(double mediaTime, Block block) = 0;
  /// Drops a block. No effect on one that has run, and none on one that is just running.
  virtual void cancel(Token token) = 0;
};

}  // namespace platform
