#pragma once

#include "Foundation/Values/Geometry.h"
#include "OxCheckableTasks/StaticImages/Badge.h"

namespace platform {
class CGContext;
}

namespace velloro {

struct BadgeDrawing {
  const Badge& badge;
  CGRect frame;  ///< On a surface whose y grows downwards.
  OxCodableColor circleColor;
  OxCodableColor contentColor;  ///< Clear cuts an icon out.
  double contentDiameter = 0;
  double scale = 1;  ///< Pixels per unit of the surface.
};

/// Draws a badge's disc.
void drawBadgeCircle(CGContext& context, const BadgeDrawing& drawing);
/// Draws what is in it, in its middle.
void drawBadgeContent(CGContext& context, const BadgeDrawing& drawing);

}  // namespace velloro
