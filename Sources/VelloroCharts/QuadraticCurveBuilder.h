#pragma once

#include "CoreGraphics/CGPath.h"
#include "OxKit/Platform.h"

#include <span>

namespace velloro {

/// Draws a smooth line through points from left to right, or from right to left.
struct QuadraticCurveBuilder {
  /// Two points give a straight line, fewer give nothing. Between two neighbours the line stays
  /// between their heights, so no peak rises above its point.
  ///
  ///     QuadraticCurveBuilder::path(std::vector<CGPoint>{{0, 9}, {5, 2}, {10,
  ///     9}}).elements().size();
  ///     // 3: a move and two curves
  [[nodiscard]] static CGPath path(std::span<const CGPoint> points);
};

}  // namespace velloro
