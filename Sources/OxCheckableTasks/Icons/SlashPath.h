#pragma once

#include "CoreGraphics/CGPath.h"
#include "OxKit/Platform.h"

namespace velloro {

inline constexpr double defaultSlashLineLengthDelta = 1.13;
inline constexpr double defaultSlashLineThicknessDelta = 0.1;
inline constexpr double defaultSlashCornerRadiusDelta = 0.3;

struct SlashMeasures {
  double lineLengthDelta = defaultSlashLineLengthDelta;        ///< Per shorter side of the box.
  double lineThicknessDelta = defaultSlashLineThicknessDelta;  ///< Per length.
  double cornerRadiusDelta = defaultSlashCornerRadiusDelta;    ///< Per thickness.
  double degrees = -45;                                        ///< From upright, clockwise.
};

/// A bar through the middle of the box, from its left upper to its right lower corner.
[[nodiscard]] CGPath backslash(CGRect rect, const SlashMeasures& measures = {});

/// The bar that lies over an icon, and the wider one that is cut out of the icon before.
[[nodiscard]] inline CGPath slash(CGRect rect) {
  return backslash(rect);
}
[[nodiscard]] inline CGPath slashOutline(CGRect rect) {
  return backslash(
      rect, {.lineLengthDelta = 1.2995, .lineThicknessDelta = 0.2, .cornerRadiusDelta = 0.321});
}

}  // namespace velloro
