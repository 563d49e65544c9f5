#pragma once

#include "OxCheckableTasks/Ring/SegmentNotches.h"
#include "OxKit/OxCodableColor.h"

namespace platform {
class CGContext;
}

namespace velloro::SegmentRenderer {

using FillDirection = velloro::FillDirection;

/// Draws the notches between a track's segments as lines of that thickness, on a surface whose y
/// grows upwards. A clear colour cuts them out of what is there. Nothing for a thickness of 0.
void drawSegments(CGContext& context, const SegmentedTrack& track, double notchThickness,
                  const OxCodableColor& color);

}  // namespace velloro::SegmentRenderer
