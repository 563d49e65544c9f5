#include "OxCheckableTasks/StaticImages/Badge.h"

#include "Foundation/Text/String.h"

#include <cmath>
#include <numbers>

namespace velloro {
namespace {

struct Place {
  double degrees;  // from the top, clockwise
  bool isInside;
};

Place place(BadgePosition position) {
  switch (position) {
    case BadgePosition::topLeading:
      return {315, false};
    case BadgePosition::topTrailing:
      return {45, false};
    case BadgePosition::bottomLeading:
      return {225, false};
    case BadgePosition::bottomTrailing:
      return {135, false};
    case BadgePosition::topLeadingInside:
      return {315, true};
    case BadgePosition::topTrailingInside:
      return {45, true};
    case BadgePosition::bottomLeadingInside:
      return {225, true};
    case BadgePosition::bottomTrailingInside:
      return {135, true};
  }
  return {45, false};
}

}  // namespace

CGRect Badge::frame(CGRect taskFrame, double trackWidth) const {
  return frame(taskFrame, trackWidth, taskFrame.size.width * normalizedBadgeDiameter, position);
}

CGRect Badge::frame(CGRect taskFrame, double trackWidth, double diameter, BadgePosition position) {
  const auto [degrees, isInside] = place(position);
  const double angle = degrees / 180 * std::numbers::pi;
  const double half = taskFrame.size.width / 2;
  const double radius = isInside ? half - diameter / 2 + 0.2 * trackWidth : half - trackWidth / 2;
  return {.origin = {.x = taskFrame.origin.x + half + std::round(radius * std::sin(angle)) -
                          diameter / 2,
                     .y = taskFrame.origin.y + taskFrame.size.height / 2 +
                          std::round(radius * std::cos(angle)) - diameter / 2},
          .size = {.width = diameter, .height = diameter}};
}

std::string normalizedMonogram(std::string_view monogram) {
  const auto characters = graphemes(monogram);
  if (characters.size() <= 2) return std::string(monogram);
  return std::string(characters.front()).append(characters.back());
}

}  // namespace velloro
