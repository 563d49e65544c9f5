#include "VelloroPictures/GraphPicture.h"

#include "VelloroCore/Appearance/ColorContrast.h"

namespace velloro {

void GraphPicture::draw(CGContext& context, const PictureStyle& style) const {
  const double diameter = graph_.request.pointDiameter;
  context.setFillColor(style.background);
  context.fill(CGRect{{}, size()});
  context.setFillColor(mixed(style.background, style.accent, 0.16));
  context.fill(graph_.fillPath);
  context.setStrokeColor(style.accent);
  context.setLineWidth(graph_.request.lineThickness);
  context.stroke(graph_.linePath);
  context.setFillColor(style.accent);
  for (const CGPoint& point : graph_.points) {
    context.fillEllipse({{point.x - diameter / 2, point.y - diameter / 2}, {diameter, diameter}});
  }
}

}  // namespace velloro
