#pragma once

#include "CoreGraphics/CGColor.h"

#include <vector>

namespace platform {

/// Colours along a line: `colors[i]` at `locations[i]`, in 0..1 and growing, blended between. As
/// many locations as colours; what is over in the longer list counts for nothing.
struct CGGradient {
  std::vector<CGColor> colors;
  std::vector<double> locations;

  bool operator==(const CGGradient&) const = default;
};

}  // namespace platform
