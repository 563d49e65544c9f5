#pragma once

#include "Foundation/Dispatch/NSTimer.h"

#include <functional>

namespace platform {

/// Calls back once a frame on the main queue, on the beat of the media clock, while it isn't
/// paused. It is made paused and runs at 60 frames a second; the first frame comes one beat after
/// `setPaused(false)`. A callback that runs late leaves out the frames that have passed.
///
///     CADisplayLink link([] { Environment::current().report("a frame"); });
///     link.setPreferredFramesPerSecond(120);
///     link.setPaused(false);              // ticks 1/120 s, 2/120 s, … from now
///
/// It goes with its handle, as `NSTimer` does. For the main thread alone.
class CADisplayLink {
 public:
  explicit CADisplayLink(std::function<void()> callback) : callback_(std::move(callback)) {}
  CADisplayLink(const CADisplayLink&) = delete;
  CADisplayLink& operator=(const CADisplayLink&) = delete;

  [[nodiscard]] int preferredFramesPerSecond() const { return framesPerSecond_; }
  /// At least 1. Another rate than before begins a new beat.
  void setPreferredFramesPerSecond(int rate);
  [[nodiscard]] bool isPaused() const { return paused_; }
  void setPaused(bool paused);
  /// Never calls back again. May be called from the callback.
  void invalidate();

 private:
  void restart();

  std::function<void()> callback_;  // empty once invalid
  NSTimer beat_;
  int framesPerSecond_ = 60;
  bool paused_ = true;
};

}  // namespace platform
