#pragma once

#include "CoreGraphics/CGAffineTransform.h"
#include "CoreGraphics/CGColor.h"
#include "CoreGraphics/CGGradient.h"
#include "CoreGraphics/CGImage.h"
#include "CoreGraphics/CGPath.h"
#include "Foundation/Values/Geometry.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace platform {

/// What becomes of what is there already. Only what lies within the drawn shape changes.
enum class CGBlendMode : std::uint8_t {
  normal,          ///< The new lies over the old.
  copy,            ///< The new replaces the old, its transparency included.
  clear,           ///< The old is erased, whatever the colour is.
  destinationOut,  ///< The old is erased as far as the new is opaque.
};

enum class CGLineCap : std::uint8_t { butt, round };

/// A surface to draw on. It begins with y growing downwards from the left upper corner and one unit
/// to a pixel; black to fill and to stroke with, lines 1 wide with butt caps, alpha 1, no clip. To
/// draw with y growing upwards, translate by the height and scale by (1, -1); images and texts then
/// stand on their heads. For one thread at a time.
///
///     const auto context = CGContext::bitmap(200, 200);
///     if (!context) return;                          // the drawing module is missing
///     context->scaleBy(2, 2);                        // 100 by 100 points
///     context->setFillColor({.green = 1});
///     context->fillEllipse({{0, 0}, {100, 100}});
///     context->makeImage()->pixel(100, 100);         // 0xFF00FF00
class CGContext {
 public:
  virtual ~CGContext() = default;
  CGContext() = default;
  CGContext(const CGContext&) = delete;
  CGContext& operator=(const CGContext&) = delete;

  /// A transparent bitmap. None where a side is 0 or above 32,767, where memory is short and where
  /// the drawing module is missing.
  [[nodiscard]] static std::unique_ptr<CGContext> bitmap(std::size_t width, std::size_t height);

  [[nodiscard]] virtual std::size_t width() const = 0;
  [[nodiscard]] virtual std::size_t height() const = 0;
  /// The pixels as they are now; later drawing leaves the image alone.
  [[nodiscard]] virtual std::shared_ptr<const CGImage> makeImage() = 0;
  /// Makes every pixel transparent, whatever the clip; the state stays.
  virtual void clear() = 0;

  /// Everything set, and the transformation and the clip, returns with the restore. A restore too
  /// many does nothing.
  virtual void saveGState() = 0;
  virtual void restoreGState() = 0;

  /// What is drawn from here on goes through `transform` first, then through what held before.
  virtual void concatenate(const CGAffineTransform& transform) = 0;
  void translateBy(double x, double y) { concatenate(CGAffineTransform::translation(x, y)); }
  void scaleBy(double x, double y) { concatenate(CGAffineTransform::scale(x, y)); }
  void rotateBy(double degrees) { concatenate(CGAffineTransform::rotation(degrees)); }

  /// Narrows the clip to what also lies within the path.
  virtual void clip(const CGPath& path) = 0;
  void clipToEllipse(CGRect rect) { clip(CGPath::ellipse(rect)); }

  /// A factor to the alpha of all that is drawn, in 0..1.
  virtual void setAlpha(double alpha) = 0;
  virtual void setBlendMode(CGBlendMode mode) = 0;
  virtual void setFillColor(CGColor color) = 0;
  virtual void setStrokeColor(CGColor color) = 0;
  virtual void setLineWidth(double width) = 0;
  virtual void setLineCap(CGLineCap cap) = 0;

  virtual void fill(const CGPath& path) = 0;
  virtual void fill(CGRect rect) = 0;
  void fillEllipse(CGRect rect) { fill(CGPath::ellipse(rect)); }
  virtual void stroke(const CGPath& path) = 0;

  /// Fills the clip with the gradient along the line from `start` to `end`. Beside the line the
  /// colours go on; beyond the end the last colour does, before the start nothing is drawn.
  virtual void drawLinearGradient(const CGGradient& gradient, CGPoint start, CGPoint end) = 0;

  /// Draws the image, scaled to the rectangle.
  virtual void draw(const CGImage& image, CGRect rect) = 0;
  /// Fills the rectangle with the fill colour through the image's alpha: where the image is opaque
  /// the colour is laid on, where it is transparent nothing happens.
  virtual void fill(const CGImage& mask, CGRect rect) = 0;
};

/// Saves the context's state, and restores it at scope end.
class SavedGState {
 public:
  explicit SavedGState(CGContext& context) : context_(context) { context_.saveGState(); }
  ~SavedGState() { context_.restoreGState(); }
  SavedGState(const SavedGState&) = delete;
  SavedGState& operator=(const SavedGState&) = delete;

 private:
  CGContext& context_;
};

}  // namespace platform
