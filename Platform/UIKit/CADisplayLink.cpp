#include "UIKit/CADisplayLink.h"

#include <algorithm>

namespace platform {

void CADisplayLink::setPreferredFramesPerSecond(int rate) {
  const int wanted = std::max(1, rate);
  if (wanted == framesPerSecond_) return;
  framesPerSecond_ = wanted;
  restart();
}

void CADisplayLink::setPaused(bool paused) {
  if (paused == paused_) return;
  paused_ = paused;
  restart();
}

void CADisplayLink::invalidate() {
  callback_ = nullptr;
  restart();
}

void CADisplayLink::restart() {
  beat_.invalidate();
  if (paused_ || !callback_) return;
  // A copy runs, because the callback may be the end of this link.
  beat_ = NSTimer::scheduled(1.0 / framesPerSecond_, true, [this] {
    const auto running = callback_;
    running();
  });
}

}  // namespace platform
