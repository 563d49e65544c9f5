#include "OxCheckableTasks/StaticImages/BadgeRenderer.h"

#include "CoreGraphics/CGContext.h"
#include "OxCheckableTasks/Icons/IconArtwork.h"
#include "UIKit/TextLayout.h"

#include <algorithm>

namespace velloro {
namespace {

using Representation = IconVisualRepresentation;

constexpr double monogramSize = 0.9;
constexpr double symbolResizeFactor = 0.9;

CGPoint middle(CGRect frame) {
  return {.x = frame.origin.x + frame.size.width / 2, .y = frame.origin.y + frame.size.height / 2};
}

CGRect centered(CGRect frame, double side) {
  const auto [x, y] = middle(frame);
  return {.origin = {.x = x - side / 2, .y = y - side / 2},
          .size = {.width = side, .height = side}};
}

void drawText(CGContext& context, const BadgeDrawing& drawing, std::string_view text,
              const UIFont& font) {
  const NSAttributedString line(text, {.font = font, .color = drawing.contentColor});
  const auto layout = TextLayout::make(line, {.scale = drawing.scale});
  if (layout) layout->drawCentered(context, middle(drawing.frame));
}

void drawImage(CGContext& context, const BadgeDrawing& drawing, double side) {
  const IconArtwork artwork{.representation = drawing.badge.content->displayRepresentation,
                            .side = side,
                            .scale = drawing.scale};
  const UIImage image = artwork.image();
  if (!image.cgImage) return;
  const SavedGState saved(context);
  const CGRect rect = centered(drawing.frame, side);
  if (drawing.contentColor.a == 0) {
    context.setBlendMode(CGBlendMode::destinationOut);
    return context.draw(*image.cgImage, rect);
  }
  context.setFillColor(drawing.contentColor);
  context.fill(*image.cgImage, rect);
}

struct ContentDrawer {
  CGContext& context;
  const BadgeDrawing& drawing;

  void operator()(const Representation::Emoji& emoji) const {
    drawText(context, drawing, emoji.text, UIFont::system(drawing.contentDiameter));
  }
  void operator()(const Representation::Monogram& monogram) const {
    UIFont font = UIFont::system(drawing.contentDiameter * monogramSize, UIFont::Weight::bold);
    if (const auto& name = drawing.badge.content->monogramFontName) font.name = *name;
    drawText(context, drawing, normalizedMonogram(monogram.text), font);
  }
  void operator()(const IconManagerIcon&) const {
    drawImage(context, drawing, drawing.contentDiameter);
  }
  void operator()(const OxSymbol&) const {
    drawImage(context, drawing, drawing.contentDiameter * symbolResizeFactor);
  }
};

}  // namespace

BadgeDrawing BadgeDrawing::of(const Badge& badge, const Place& place) {
  CGRect frame = badge.frame(place.ring, place.trackWidth);
  const CGRect& surface = place.surface;
  frame.origin.y = 2 * surface.origin.y + surface.size.height - frame.origin.y - frame.size.height;
  const double part = std::clamp(badge.normalizedContentDiameter, 0.0, 1.0);
  return {.badge = badge,
          .frame = frame,
          .circleColor = place.circleColor,
          .contentColor = place.contentColor,
          .contentDiameter = part * frame.size.width,
          .scale = place.scale};
}

void drawBadgeCircle(CGContext& context, const BadgeDrawing& drawing) {
  context.setFillColor(drawing.circleColor);
  context.fillEllipse(drawing.frame);
}

void drawBadgeContent(CGContext& context, const BadgeDrawing& drawing) {
  if (!drawing.badge.content) return;
  std::visit(ContentDrawer{context, drawing},
             drawing.badge.content->displayRepresentation.visualRepresentation.value);
}

}  // namespace velloro
