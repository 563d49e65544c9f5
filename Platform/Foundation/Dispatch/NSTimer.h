#pragma once

#include "Foundation/Dispatch/Block.h"
#include "Foundation/Time/Date.h"

#include <memory>
#include <optional>

namespace platform {

/// Runs a block on the main queue after an interval, once or repeatedly. The timer ends with its
/// handle: a handle that is destroyed or assigned to is invalidated first. Therefore a class can
/// hold its timers as members, and their blocks may capture `this`. For the main thread alone.
///
///     NSTimer timer;                                 // invalid
///     timer = NSTimer::scheduled(0.8, false, [] {});
///     timer.isValid();                               // true
///     timer.invalidate();                            // the block never runs
///
/// A repeating timer keeps to its first rhythm, however late its block runs, and leaves out the
/// times that have passed meanwhile. Intervals are measured on the media clock; a change of the
/// wall clock moves no timer.
class NSTimer {
 public:
  /// A timer that never fires.
  NSTimer() = default;
  NSTimer(NSTimer&& other) noexcept = default;
  NSTimer& operator=(NSTimer&& other) noexcept;
  ~NSTimer() { invalidate(); }

  /// \param interval In seconds; anything below 0.0001 counts as that.
  [[nodiscard]] static NSTimer scheduled(TimeInterval interval, bool repeats, Block block);

  /// Whether the timer will fire again: one that does not repeat is invalid from its block on.
  [[nodiscard]] bool isValid() const;
  /// The timer does not fire any more, and its block is destroyed, once it has ended if it is
  /// running. May be called from the block.
  void invalidate();

  /// Runs the block now, if the timer is valid. A repeating timer keeps its rhythm; another has
  /// fired and is invalid.
  void fire();

  /// When it fires next, by the wall clock as it stood when that was settled; absent when invalid.
  [[nodiscard]] std::optional<Date> fireDate() const;
  /// Moves the next firing to `date`, a past one to at once, and the rhythm with it. No effect on
  /// an invalid timer.
  void setFireDate(Date date);

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace platform
