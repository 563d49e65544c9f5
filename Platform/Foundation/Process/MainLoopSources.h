#pragma once

#include "Foundation/Process/MainLoop.h"

#include <memory>
#include <vector>

namespace platform {

/// The sources of one main loop. For the main thread alone.
class MainLoopSources {
 public:
  void add(std::weak_ptr<MainLoopSource> source) { sources_.push_back(std::move(source)); }
  [[nodiscard]] bool isEmpty() const { return sources_.empty(); }
  /// Waits until a source is ready, or `wake` is, or the time is over, and lets each source that is
  /// ready proceed.
  /// \param wake A descriptor that only ends the wait; -1 for none.
  void await(int wake, double seconds);

 private:
  std::vector<std::weak_ptr<MainLoopSource>> sources_;
};

}  // namespace platform
