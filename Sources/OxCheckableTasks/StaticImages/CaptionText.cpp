#include "OxCheckableTasks/StaticImages/CaptionText.h"

#include "UIKit/TextLayout.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace velloro {
namespace {

NSAttributedString joined(const std::vector<NSAttributedString>& items,
                          const NSAttributedString::Attributes& attributes) {
  constexpr double spaceSize = 0.6;
  NSAttributedString::Attributes narrow = attributes;
  narrow.font = attributes.font.withSize(attributes.font.pointSize * spaceSize);
  NSAttributedString line;
  for (const NSAttributedString& item : items) {
    if (!line.isEmpty()) line.append(" ", narrow);
    line.append(item);
  }
  return line;
}

/// None for an empty line.
std::shared_ptr<TextLayout> layOut(const CaptionLine& line, const CaptionPlace& place,
                                   double scale) {
  const NSAttributedString natural = line.inFont(1);
  if (natural.isEmpty()) return nullptr;
  auto layout = TextLayout::make(natural, {.scale = scale});
  if (!layout) return nullptr;
  const double factor = captionFactor(layout->size(), place);
  return factor < 1 ? TextLayout::make(line.inFont(factor), {.scale = scale}) : layout;
}

/// \param y The middle of the line, below the ring's upper edge.
void drawCaption(CGContext& context, const CaptionLine& line, const CaptionRing& ring, double y) {
  const auto& [origin, size] = ring.frame;
  const auto layout = layOut(line,
                             {.radius = ring.radius,
                              .trackWidth = ring.trackWidth,
                              .distance = std::abs(y - size.height / 2),
                              .isBesideDot = ring.hasDot},
                             ring.scale);
  if (layout) layout->drawCentered(context, {origin.x + size.width / 2, origin.y + y});
}

}  // namespace

NSAttributedString CaptionLine::inFont(double factor) const {
  NSAttributedString::Attributes sized = attributes;
  sized.font = attributes.font.withSize(attributes.font.pointSize * factor);
  std::vector<NSAttributedString> items;
  const auto addIcons = [&](const std::vector<Icon>& icons) {
    for (const auto& [representation, color] : icons) {
      items.push_back(
          representation.inlineAttributedString(sized.font, color, sized.writingDirection, {}));
    }
  };
  addIcons(leadingIcons);
  if (!text.empty()) items.emplace_back(text, sized);
  addIcons(trailingIcons);
  return joined(items, sized);
}

double captionFactor(CGSize line, const CaptionPlace& place) {
  constexpr double lettersInLine = 0.3;  // from its middle to the edge of capitals, per height
  // The ring's own track, and the narrower one or the dot inside it, with their gaps.
  const double tracks = place.isBesideDot ? 2.05 : 1.5;
  const double free = place.radius - tracks * place.trackWidth;
  const double d = place.distance;
  if (free <= d || !(line.width > 0)) return 1;
  // The outer corner of the letters, (width / 2, d + letters) at the factor 1, comes to lie on the
  // circle: f² (letters² + width² / 4) + 2 d letters f + d² = free².
  const double letters = lettersInLine * line.height;
  const double a = letters * letters + line.width * line.width / 4;
  const double root = std::sqrt(d * d * letters * letters + a * (free * free - d * d));
  return std::min(1.0, (root - d * letters) / a);
}

void drawBottomCaption(CGContext& context, const CaptionLine& line, const CaptionRing& ring) {
  const double height = ring.frame.size.height;
  drawCaption(context, line, ring,
              ((height - ring.trackWidth) + (height + ring.iconHeight) / 2) / 2);
}

void drawTopCaption(CGContext& context, const CaptionLine& line, const CaptionRing& ring) {
  drawCaption(context, line, ring,
              (ring.trackWidth + (ring.frame.size.height - ring.iconHeight) / 2) / 2);
}

}  // namespace velloro
