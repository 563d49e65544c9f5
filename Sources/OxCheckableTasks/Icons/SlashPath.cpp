#include "OxCheckableTasks/Icons/SlashPath.h"

#include <algorithm>

namespace velloro {

CGPath backslash(CGRect rect, const SlashMeasures& measures) {
  const double length = measures.lineLengthDelta * std::min(rect.size.width, rect.size.height);
  const double thickness = measures.lineThicknessDelta * length;
  const CGPoint middle{.x = rect.origin.x + rect.size.width / 2,
                       .y = rect.origin.y + rect.size.height / 2};
  return CGPath::roundedRect({.origin = {.x = -thickness / 2, .y = -length / 2},
                              .size = {.width = thickness, .height = length}},
                             measures.cornerRadiusDelta * thickness)
      .applying(CGAffineTransform::rotation(measures.degrees))
      .applying(CGAffineTransform::translation(middle.x, middle.y));
}

}  // namespace velloro
