#pragma once

#include "Foundation/Values/Geometry.h"
#include "OxCheckableTasks/StaticImages/Badge.h"

namespace platform {
class CGContext;
}

namespace velloro {

/// A badge on a surface whose y grows downwards.
struct BadgeDrawing {
  const Badge& badge;
  CGRect frame;
  OxCodableColor circleColor;
  OxCodableColor contentColor;  ///< Clear cuts an icon out.
  double contentDiameter = 0;
  double scale = 1;  ///< Pixels per unit of the surface.

  struct Place {
    CGRect ring;
    double trackWidth = 0;
    CGRect surface;  ///< In which the frame of the badge, whose y grows upwards, is turned over.
    OxCodableColor circleColor;
    OxCodableColor contentColor;
    double scale = 1;
  };
  [[nodiscard]] static BadgeDrawing of(const Badge& badge, const Place& place);
};

/// Draws a badge's disc.
void drawBadgeCircle(CGContext& context, const BadgeDrawing& drawing);
/// Draws what is in it, in its middle.
void drawBadgeContent(CGContext& context, const BadgeDrawing& drawing);

}  // namespace velloro
