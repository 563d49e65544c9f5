#include "CheckableTasks/AnimatedValue.h"

namespace velloro {

void AnimatedValue::jump(double target) {
  target_ = target;
  current_ = target;
}

void AnimatedValue::start(double target, OxAnimationCurve curve, double begin, double end) {
  from_ = current_;
  target_ = target;
  curve_ = curve;
  begin_ = begin;
  end_ = end;
}

bool AnimatedValue::tick(double now) {
  if (!begin_ || !end_) return false;
  if (*end_ < now) {
    begin_.reset();
    end_.reset();
    current_ = target_;
    return true;
  }
  const double t = (now - *begin_) / (*end_ - *begin_);
  current_ = from_ + valueAt(curve_, t) * (target_ - from_);
  return false;
}

}  // namespace velloro
