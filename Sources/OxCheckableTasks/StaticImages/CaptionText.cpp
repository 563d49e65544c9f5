#include "OxCheckableTasks/StaticImages/CaptionText.h"

#include <algorithm>
#include <cmath>

namespace velloro {

NSAttributedString joinedCaption(const std::vector<NSAttributedString>& items,
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

std::shared_ptr<TextLayout> layOutCaption(
    const std::function<NSAttributedString(double factor)>& line, const CaptionPlace& place,
    double scale) {
  const NSAttributedString natural = line(1);
  if (natural.isEmpty()) return nullptr;
  auto layout = TextLayout::make(natural, {.scale = scale});
  if (!layout) return nullptr;
  const double factor = captionFactor(layout->size(), place);
  return factor < 1 ? TextLayout::make(line(factor), {.scale = scale}) : layout;
}

}  // namespace velloro
