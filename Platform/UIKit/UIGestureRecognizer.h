#pragma once

#include "Foundation/Dispatch/NSTimer.h"
#include "Foundation/Values/Geometry.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace platform {

class UIGestureRecognizer;

/// One finger's place in the view's points, at one step of its way.
struct UITouch {
  enum class Phase : std::uint8_t { began, moved, ended, cancelled };

  Phase phase;
  CGPoint location;
};

/// Says which gestures a view wants. Asked on the main thread.
class UIGestureRecognizerDelegate {
 public:
  virtual ~UIGestureRecognizerDelegate() = default;

  /// Whether a gesture that was made may count; if not, the recogniser fails.
  virtual bool gestureRecognizerShouldBegin(const UIGestureRecognizer&) { return true; }
  /// Whether the recogniser receives a touch; called when the touch begins.
  virtual bool gestureRecognizerShouldReceive(const UIGestureRecognizer&, const UITouch&) {
    return true;
  }
};

/// Watches the touches of one finger for a gesture. A gesture is over when the finger is lifted;
/// the recogniser then waits for the next, in state `possible`. Owned by a `shared_ptr`, and for
/// the main thread alone.
///
///     UIView view({44, 44});
///     const auto press = std::make_shared<UILongPressGestureRecognizer>([](auto&) {});
///     press->minimumPressDuration = 0.2;
///     const auto tap = std::make_shared<UITapGestureRecognizer>([](auto& gesture) {});
///     tap->requireToFail(press);
///     view.addGestureRecognizer(press), view.addGestureRecognizer(tap);
class UIGestureRecognizer : public std::enable_shared_from_this<UIGestureRecognizer> {
 public:
  /// A gesture of one moment goes from `possible` to `ended`, one that lasts through `began`, any
  /// number of `changed`, and `ended` or `cancelled`.
  enum class State : std::uint8_t { possible, began, changed, ended, cancelled, failed };
  using Action = std::function<void(UIGestureRecognizer&)>;

  /// \param action Called at each change to `began`, `changed`, `ended` and `cancelled`.
  explicit UIGestureRecognizer(Action action) : action_(std::move(action)) {}
  virtual ~UIGestureRecognizer() = default;
  UIGestureRecognizer(const UIGestureRecognizer&) = delete;
  UIGestureRecognizer& operator=(const UIGestureRecognizer&) = delete;

  [[nodiscard]] State state() const { return state_; }
  /// Where the finger was last.
  [[nodiscard]] CGPoint location() const { return location_; }
  /// Must outlive the recogniser, or be taken away.
  void setDelegate(UIGestureRecognizerDelegate* delegate) { delegate_ = delegate; }

  /// This gesture counts only once the other has failed: until then it waits.
  void requireToFail(const std::shared_ptr<UIGestureRecognizer>& other);

  /// One step of the finger; the view calls it.
  void receive(const UITouch& touch);
  /// Ends a gesture under way as if the touch had been cancelled; what the finger still does counts
  /// for nothing. The view calls it.
  void cancel();

 protected:
  /// How far, in points, a finger may stray and still count as resting.
  static constexpr double allowableMovement = 10;

  virtual void touchBegan() = 0;
  virtual void touchMoved() = 0;
  virtual void touchEnded() = 0;
  virtual void touchCancelled() = 0;

  /// Leaves `possible` for `began` or `ended` if the delegate lets it and what must fail has
  /// failed; waits for the latter; fails otherwise.
  void recognize(State state);
  /// A step of a gesture that has begun, or `failed`.
  void setState(State state);
  [[nodiscard]] bool hasBegun() const { return state_ == State::began || state_ == State::changed; }
  [[nodiscard]] bool hasStrayed() const;

 private:
  [[nodiscard]] bool isUndecided() const { return tracking_ && state_ == State::possible; }
  void otherHasSettled(bool failed);

  Action action_;
  UIGestureRecognizerDelegate* delegate_ = nullptr;
  State state_ = State::possible;
  CGPoint location_;
  CGPoint start_;
  bool tracking_ = false;         // a finger is down
  std::optional<State> waiting_;  // recognised, but for what must fail first
  std::weak_ptr<UIGestureRecognizer> mustFail_;
  std::vector<std::weak_ptr<UIGestureRecognizer>> dependents_;
};

/// A finger that rests. Begins when it has for `minimumPressDuration` seconds; strayed or lifted
/// before, it fails.
class UILongPressGestureRecognizer : public UIGestureRecognizer {
 public:
  using UIGestureRecognizer::UIGestureRecognizer;

  double minimumPressDuration = 0.5;

 protected:
  void touchBegan() override;
  void touchMoved() override;
  void touchEnded() override;
  void touchCancelled() override;

 private:
  NSTimer resting_;
};

/// A finger put down and lifted at the same place, however long that took.
class UITapGestureRecognizer : public UIGestureRecognizer {
 public:
  using UIGestureRecognizer::UIGestureRecognizer;

 protected:
  void touchBegan() override {}
  void touchMoved() override {
    if (hasStrayed()) setState(State::failed);
  }
  void touchEnded() override { recognize(State::ended); }
  void touchCancelled() override { setState(State::failed); }
};

}  // namespace platform
