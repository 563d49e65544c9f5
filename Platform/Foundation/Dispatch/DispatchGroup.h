#pragma once

#include "Foundation/Dispatch/DispatchQueue.h"

#include <memory>
#include <optional>

namespace platform {

/// Waits for pieces of work that end independently: each enters and leaves the group, and when all
/// have left, the notifications are sent. It is a value: copies refer to the same group, so that
/// blocks may hold one.
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
  /// To be called once for each `enter`; a further call is an error (assertion).
  void leave() const;

  /// Runs the block on the queue as soon as the group is empty.
  void notify(const DispatchQueue& queue, Block block) const;

  /// Waits until the group is empty, or for `timeout` seconds. Returns whether it was empty. The
  /// timeout is a safety net and runs in real time, also where time is virtual. Never on the main
  /// thread for work that needs the main queue.
  bool wait(std::optional<TimeInterval> timeout = {}) const;

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace platform
