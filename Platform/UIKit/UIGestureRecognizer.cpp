#include "UIKit/UIGestureRecognizer.h"

#include <cmath>

namespace platform {

void UIGestureRecognizer::requireToFail(const std::shared_ptr<UIGestureRecognizer>& other) {
  mustFail_ = other;
  other->dependents_.push_back(weak_from_this());
}

void UIGestureRecognizer::receive(const UITouch& touch) {
  const auto self = shared_from_this();  // an action may take the view apart
  location_ = touch.location;
  if (touch.phase == UITouch::Phase::began) {
    if (tracking_) return;
    if (delegate_ != nullptr && !delegate_->gestureRecognizerShouldReceive(*this, touch)) return;
    tracking_ = true;
    start_ = touch.location;
    state_ = State::possible;
    waiting_.reset();
    return touchBegan();
  }
  if (!tracking_) return;
  if (touch.phase == UITouch::Phase::moved) {
    if (state_ != State::failed) touchMoved();
    return;
  }
  if (state_ != State::failed)
    touch.phase == UITouch::Phase::ended ? touchEnded() : touchCancelled();
  tracking_ = false;
  state_ = State::possible;
}

void UIGestureRecognizer::cancel() {
  waiting_.reset();
  receive({.phase = UITouch::Phase::cancelled, .location = location_});
}

void UIGestureRecognizer::recognize(State state) {
  if (state_ != State::possible) return;
  const auto other = mustFail_.lock();
  if (other && other->isUndecided()) {
    waiting_ = state;
    return;
  }
  waiting_.reset();
  const bool wanted = delegate_ == nullptr || delegate_->gestureRecognizerShouldBegin(*this);
  setState(wanted ? state : State::failed);
}

void UIGestureRecognizer::setState(State state) {
  const auto self = shared_from_this();
  state_ = state;
  for (const auto& dependent : dependents_) {
    if (const auto waiting = dependent.lock()) waiting->otherHasSettled(state == State::failed);
  }
  if (state != State::failed && action_) action_(*this);
}

bool UIGestureRecognizer::hasStrayed() const {
  return std::hypot(location_.x - start_.x, location_.y - start_.y) > allowableMovement;
}

void UIGestureRecognizer::otherHasSettled(bool failed) {
  if (!failed) {
    waiting_.reset();
    if (isUndecided()) setState(State::failed);
  } else if (waiting_) {
    recognize(*waiting_);
    if (!tracking_) state_ = State::possible;
  }
}

void UILongPressGestureRecognizer::touchBegan() {
  resting_ = NSTimer::scheduled(minimumPressDuration, false, [this] { recognize(State::began); });
}

void UILongPressGestureRecognizer::touchMoved() {
  if (hasBegun()) {
    setState(State::changed);
  } else if (hasStrayed()) {
    resting_.invalidate();
    setState(State::failed);
  }
}

void UILongPressGestureRecognizer::touchEnded() {
  resting_.invalidate();
  setState(hasBegun() ? State::ended : State::failed);
}

void UILongPressGestureRecognizer::touchCancelled() {
  resting_.invalidate();
  setState(hasBegun() ? State::cancelled : State::failed);
}

}  // namespace platform
