#pragma once

namespace platform {

/// A colour to draw with: sRGB components and alpha, not premultiplied, in 0..1. What lies outside
/// is held at the nearer end when it is drawn.
struct CGColor {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 1;

  bool operator==(const CGColor&) const = default;

  [[nodiscard]] static constexpr CGColor clear() { return {.alpha = 0}; }
  [[nodiscard]] constexpr CGColor withAlpha(double value) const {
    return {.red = red, .green = green, .blue = blue, .alpha = value};
  }
};

}  // namespace platform
