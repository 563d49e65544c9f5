#pragma once

#include "CoreGraphics/CGContext.h"
#include "UIKit/UIView.h"
#include "velloro/Pictures/RingLook.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace velloro {

/// A picture being drawn, in points.
/// \throws RuntimeError If nothing can be drawn.
class Canvas {
 public:
  Canvas(CGSize size, double scale);

  [[nodiscard]] CGContext& context() { return *context_; }
  [[nodiscard]] std::shared_ptr<const CGImage> image() { return context_->makeImage(); }

  void paint(CGRect rect, const OxCodableColor& color);
  /// What lies behind a page of tasks.
  void paint(CGRect rect, const ThemeBackgroundType& background);
  /// One line, its middle at `center`.
  void write(std::string_view text, CGPoint center, const UIFont& font,
             const OxCodableColor& color);
  /// What the window shows.
  void show(UIWindow& window, CGPoint origin);

 private:
  std::unique_ptr<CGContext> context_;
};

/// How a ring's picture is made.
struct RingPicture {
  RingLook look = {};
  double scale = 2;  ///< Pixels per point.

  [[nodiscard]] std::shared_ptr<const CGImage> image() const;

  /// Takes a frame and its place in the animation.
  using TakeFrame = std::function<void(const CGImage& image, const AnimationFrame& frame)>;
  /// Passes the frames of a ring that checks itself to `take`, one by one, from the start until
  /// half a second after the last change. It does not wait between frames.
  void playChecking(std::uint16_t framesPerSecond, const TakeFrame& take) const;
  /// Every colour scheme that has the look's mode, in each status: a row for each scheme.
  [[nodiscard]] std::shared_ptr<const CGImage> sheet() const;

 private:
  [[nodiscard]] std::shared_ptr<const CGImage> pictureOf(UIWindow& window) const;
};

}  // namespace velloro
