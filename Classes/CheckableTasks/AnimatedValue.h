#pragma once

#include "OxKit/OxAnimationCurve.h"
#include "OxKit/Platform.h"

#include <optional>

namespace velloro {

/// A number that moves to its target in time. Times are seconds of the media clock.
///
///     AnimatedValue progress;
///     progress.start(1, OxAnimationCurve::linear, 10, 10.5);
///     progress.tick(10.25);
///     progress.current();    // 0.5
class AnimatedValue {
 public:
  [[nodiscard]] double target() const { return target_; }
  [[nodiscard]] double current() const { return current_; }  ///< As it is shown.

  /// Is there at once.
  void jump(double target);
  /// Sets out from where it stands.
  void start(double target, OxAnimationCurve curve, double begin, double end);
  /// Moves on to `now`. After the end it stands exactly at the target, and the result is true.
  [[nodiscard]] bool tick(double now);

 private:
  double target_ = 0;
  double from_ = 0;
  double current_ = 0;
  OxAnimationCurve curve_ = OxAnimationCurve::easeInOut;
  std::optional<double> begin_;
  std::optional<double> end_;
};

}  // namespace velloro
