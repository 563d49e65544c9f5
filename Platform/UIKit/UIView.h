#pragma once

#include "CoreGraphics/CGContext.h"
#include "Foundation/Values/Geometry.h"
#include "UIKit/UIGestureRecognizer.h"

#include <memory>
#include <string>
#include <vector>

namespace platform {

class UIWindow;

/// Something to see and to touch: draws itself when it has asked for it, and passes touches on to
/// its gesture recognisers. Owned by a `shared_ptr`, so that what happens later can hold it weakly.
/// For the main thread alone.
class UIView : public std::enable_shared_from_this<UIView> {
 public:
  /// \param size In points.
  explicit UIView(CGSize size) : bounds_{.origin = {}, .size = size} {}
  virtual ~UIView() = default;
  UIView(const UIView&) = delete;
  UIView& operator=(const UIView&) = delete;

  /// In its own points: the origin is (0, 0).
  [[nodiscard]] CGRect bounds() const { return bounds_; }
  void setSize(CGSize size);
  /// Pixels per point of what it draws.
  [[nodiscard]] double contentsScale() const { return contentsScale_; }
  void setContentsScale(double scale);
  [[nodiscard]] bool isUserInteractionEnabled() const { return isUserInteractionEnabled_; }
  /// A touch under way is cancelled when interaction is switched off.
  void setUserInteractionEnabled(bool enabled);

  /// Asks for a repaint; any number of times before it comes.
  void setNeedsDisplay() { needsDisplay_ = true; }
  [[nodiscard]] bool needsDisplay() const { return needsDisplay_; }
  /// Draws on a context that is transparent and has one unit to a point.
  virtual void draw(CGContext&) {}
  /// Draws the view as a part of another one. What it erases, it erases of itself alone.
  void drawLayer(CGContext& context, CGPoint origin);

  /// Null while the view is in none.
  [[nodiscard]] UIWindow* window() const { return window_; }

  [[nodiscard]] const std::vector<std::shared_ptr<UIGestureRecognizer>>& gestureRecognizers()
      const {
    return gestureRecognizers_;
  }
  void addGestureRecognizer(std::shared_ptr<UIGestureRecognizer> recognizer);
  /// A gesture under way is cancelled.
  void removeGestureRecognizer(const std::shared_ptr<UIGestureRecognizer>& recognizer);
  /// Hands the touch to every recogniser. Without interaction, nothing happens.
  void receive(const UITouch& touch);

  /// Whether a screen reader stops here, and what it then says.
  [[nodiscard]] virtual bool isAccessibilityElement() const { return false; }
  [[nodiscard]] virtual std::string accessibilityLabel() const { return ""; }

 protected:
  /// Called after the view has entered a window or left it.
  virtual void didMoveToWindow() {}

 private:
  friend class UIWindow;
  void moveTo(UIWindow* window);
  void cancelTouch();
  void drawScaled(CGContext& context);

  CGRect bounds_;
  double contentsScale_ = 1;
  bool isUserInteractionEnabled_ = true;
  bool needsDisplay_ = true;
  UIWindow* window_ = nullptr;
  std::vector<std::shared_ptr<UIGestureRecognizer>> gestureRecognizers_;
};

/// A place on a screen, with one view in it, and the picture that this view has drawn last.
///
///     UIWindow window(2);
///     window.setContentView(std::make_shared<UIView>(CGSize{44, 44}));
///     if (window.displayIfNeeded()) window.snapshot()->width();    // 88
class UIWindow {
 public:
  /// \param screenScale Pixels per point of the screen.
  explicit UIWindow(double screenScale) : screenScale_(screenScale) {}
  ~UIWindow() { setContentView(nullptr); }
  UIWindow(const UIWindow&) = delete;
  UIWindow& operator=(const UIWindow&) = delete;

  [[nodiscard]] double screenScale() const { return screenScale_; }
  [[nodiscard]] const std::shared_ptr<UIView>& contentView() const { return contentView_; }
  /// A view that is in another window leaves that first; a touch that is under way in a view that
  /// leaves is cancelled. Null empties the window.
  void setContentView(std::shared_ptr<UIView> view);

  /// Lets the view draw, at its contents scale, if it has asked for it; says whether it has drawn.
  /// Without a surface to draw on, the request stays.
  bool displayIfNeeded();
  /// What was drawn last; null when nothing was.
  [[nodiscard]] std::shared_ptr<const CGImage> snapshot();

 private:
  CGContext* surface();

  double screenScale_;
  std::shared_ptr<UIView> contentView_;
  std::unique_ptr<CGContext> surface_;  // kept from one frame to the next
};

}  // namespace platform
