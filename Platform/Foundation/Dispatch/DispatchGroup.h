#pragma once

#include "Foundation/Dispatch/DispatchQueue.h"

#include <memory>
#include <optional>

namespace platform {

/// Joins pieces of work that end on their own: each enters, each leaves, and when all have left,
/// the notifications go out. A value: copies name the same group, so that blocks may hold one.
///
///     std::atomic<int> sum = 0;
///     const DispatchGroup group;
///     group.enter();
///     DispatchQueue::global().async([&sum, group] { sum += 5; group.leave(); });
///     group.notify(DispatchQueue::main(), [] {});    // in the main loop, once 5 has been added
///     group.wait();                                  // true
class DispatchGroup {
 public:
  DispatchGroup();

  void enter() const;
  /// One call for each `enter`; one too many asserts.
  void leave() const;

  /// Runs the block on the queue the next time that nobody is inside, at once if so now.
  void notify(const DispatchQueue& queue, Block block) const;

  /// Waits until nobody is inside, or for `timeout` seconds. Returns whether nobody was. The
  /// timeout is a safety net and runs in real time, also where time is virtual. Never on the main
  /// thread for work that needs the main queue.
  bool wait(std::optional<TimeInterval> timeout = {}) const;

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace platform
