#include "OxCheckableTasks/Ring/SegmentRenderer.h"

#include "CoreGraphics/CGContext.h"

namespace velloro::SegmentRenderer {

void drawSegments(CGContext& context, const SegmentedTrack& track, double notchThickness,
                  const OxCodableColor& color) {
  if (!(notchThickness > 0)) return;
  const SavedGState saved(context);
  context.setBlendMode(color.a == 0 ? CGBlendMode::clear : CGBlendMode::normal);
  context.setStrokeColor(color);
  context.setFillColor(color);
  context.setLineWidth(notchThickness);
  for (const SegmentNotch& notch : segmentNotches(track)) {
    context.stroke(CGPath::line(notch.outer, notch.inner));
  }
}

}  // namespace velloro::SegmentRenderer
