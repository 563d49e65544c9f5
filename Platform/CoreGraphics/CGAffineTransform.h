#pragma once

#include "Foundation/Values/Geometry.h"

#include <cmath>
#include <numbers>

namespace platform {

/// A map of places: (x, y) becomes (a x + c y + tx, b x + d y + ty).
///
///     const auto turn = CGAffineTransform::rotation(90);
///     turn.apply({1, 0}).y;                                      // 1
///     turn.concatenating(CGAffineTransform::translation(5, 0));  // turns first, then moves
struct CGAffineTransform {
  double a = 1;
  double b = 0;
  double c = 0;
  double d = 1;
  double tx = 0;
  double ty = 0;

  bool operator==(const CGAffineTransform&) const = default;

  [[nodiscard]] static constexpr CGAffineTransform translation(double x, double y) {
    return {.tx = x, .ty = y};
  }
  [[nodiscard]] static constexpr CGAffineTransform scale(double x, double y) {
    return {.a = x, .d = y};
  }
  /// Turns +x towards +y: as a clock's hands go where y grows downwards.
  [[nodiscard]] static CGAffineTransform rotation(double degrees) {
    const double radians = degrees * std::numbers::pi / 180;
    const double sine = std::sin(radians);
    const double cosine = std::cos(radians);
    return {.a = cosine, .b = sine, .c = -sine, .d = cosine};
  }

  [[nodiscard]] constexpr CGPoint apply(CGPoint p) const {
    return {.x = a * p.x + c * p.y + tx, .y = b * p.x + d * p.y + ty};
  }
  /// This map first, `then` on its result.
  [[nodiscard]] constexpr CGAffineTransform concatenating(const CGAffineTransform& then) const {
    return {.a = then.a * a + then.c * b,
            .b = then.b * a + then.d * b,
            .c = then.a * c + then.c * d,
            .d = then.b * c + then.d * d,
            .tx = then.a * tx + then.c * ty + then.tx,
            .ty = then.b * tx + then.d * ty + then.ty};
  }
};

}  // namespace platform
