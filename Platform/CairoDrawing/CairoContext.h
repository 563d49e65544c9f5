#pragma once

#include "CairoDrawing/Free.h"
#include "CoreGraphics/CGContext.h"

#include <vector>

#include <cairo.h>

namespace platform {

using Surface = std::unique_ptr<cairo_surface_t, Free<cairo_surface_destroy>>;
using Pattern = std::unique_ptr<cairo_pattern_t, Free<cairo_pattern_destroy>>;

/// Puts an image's pixels, untouched, into a surface that lives no longer than they do.
Surface surfaceOf(const CGImage& image);

class CairoContext final : public CGContext {
 public:
  CairoContext(std::size_t width, std::size_t height);
  /// On a surface that keeps shapes instead of pixels.
  CairoContext(Surface shapes, std::size_t width, std::size_t height);

  [[nodiscard]] cairo_t* cairo() const { return cairo_.get(); }
  [[nodiscard]] double alpha() const { return state_.alpha; }
  void setSource(CGColor color);

  [[nodiscard]] std::size_t width() const override { return width_; }
  [[nodiscard]] std::size_t height() const override { return height_; }
  std::shared_ptr<const CGImage> makeImage() override;
  void clear() override;

  void saveGState() override;
  void restoreGState() override;
  void concatenate(const CGAffineTransform& transform) override;
  void clip(const CGPath& path) override;

  void setAlpha(double alpha) override { state_.alpha = alpha; }
  void setBlendMode(CGBlendMode mode) override;
  void setFillColor(CGColor color) override { state_.fill = color; }
  void setStrokeColor(CGColor color) override { state_.stroke = color; }
  void setLineWidth(double width) override;
  void setLineCap(CGLineCap cap) override;

  using CGContext::fill;
  void fill(const CGPath& path) override;
  void fill(CGRect rect) override;
  void stroke(const CGPath& path) override;
  void drawLinearGradient(const CGGradient& gradient, CGPoint start, CGPoint end) override;
  void draw(const CGImage& image, CGRect rect) override;
  void fill(const CGImage& mask, CGRect rect) override;

 private:
  struct State {
    CGColor fill;
    CGColor stroke;
    double alpha = 1;
  };

  void add(const CGPath& path);
  [[nodiscard]] Pattern imagePattern(cairo_surface_t* surface, const CGImage& image, CGRect rect);

  std::size_t width_;
  std::size_t height_;
  std::vector<std::uint32_t> pixels_;
  Surface surface_;
  std::unique_ptr<cairo_t, Free<cairo_destroy>> cairo_;
  State state_;
  std::vector<State> saved_;
};

}  // namespace platform
