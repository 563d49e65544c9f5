#include "Foundation/Dispatch/NSTimer.h"

#include "Foundation/Dispatch/DispatchQueue.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Process/MainLoop.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdint>
#include <utility>

namespace platform {

struct NSTimer::State : std::enable_shared_from_this<State> {
  TimeInterval interval;
  bool repeats;
  std::shared_ptr<Block> block;  // null when invalid
  double due = 0;                // on the media clock
  Date fireDate;
  TimedWork::Token token;
  std::uint64_t armings = 0;  // tells a firing already posted from one that still holds

  State(TimeInterval seconds, bool again, Block work)
      : interval(seconds), repeats(again), block(std::make_shared<Block>(std::move(work))) {}

  void fallDueAfter(TimeInterval seconds) {
    due = Environment::current().mediaTime() + seconds;
    fireDate = Date::now() + seconds;
    arm();
  }

  void arm() {
    Environment::current().timedWork().cancel(token);
    token = Environment::current().timedWork().schedule(
        due, [timer = weak_from_this(), arming = ++armings] {
          DispatchQueue::main().async([timer, arming] {
            const auto state = timer.lock();
            if (state && state->block && state->armings == arming) state->fallDue();
          });
        });
  }

  void fallDue() {
    if (repeats) {
      const double late = std::max(0.0, Environment::current().mediaTime() - due);
      const TimeInterval step = interval * (1 + std::floor(late / interval));
      due += step;
      fireDate = fireDate + step;
      arm();
    }
    fire();
  }

  void fire() {
    const auto running = block;
    if (!repeats) invalidate();
    (*running)();
  }

  void invalidate() {
    Environment::current().timedWork().cancel(token);
    block.reset();
  }
};

NSTimer& NSTimer::operator=(NSTimer&& other) noexcept {
  invalidate();
  state_ = std::move(other.state_);
  return *this;
}

NSTimer NSTimer::scheduled(TimeInterval interval, bool repeats, Block block) {
  constexpr TimeInterval shortest = 0.0001;
  NSTimer timer;
  timer.state_ = std::make_shared<State>(std::max(shortest, interval), repeats, std::move(block));
  timer.state_->fallDueAfter(timer.state_->interval);
  return timer;
}

bool NSTimer::isValid() const {
  assert((!state_ || DispatchQueue::main().isCurrent()) && "timers are for the main thread");
  return state_ && state_->block;
}

void NSTimer::invalidate() {
  if (isValid()) state_->invalidate();
}

void NSTimer::fire() {
  if (isValid()) std::shared_ptr(state_)->fire();
}

std::optional<Date> NSTimer::fireDate() const {
  return isValid() ? std::optional(state_->fireDate) : std::nullopt;
}

void NSTimer::setFireDate(Date date) {
  if (isValid()) state_->fallDueAfter(date.timeIntervalSince(Date::now()));
}

}  // namespace platform
