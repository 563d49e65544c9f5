#pragma once

#include "Foundation/Values/Geometry.h"
#include "OxCheckableTasks/Ring/FillDirection.h"

#include <vector>

namespace velloro {

/// A notch between two segments of a track: a line from the outer edge inwards.
struct SegmentNotch {
  CGPoint outer;
  CGPoint inner;

  bool operator==(const SegmentNotch&) const = default;
};

struct SegmentedTrack {
  CGPoint center;
  double trackWidth = 0;
  double radiusAtTrackCenter = 0;
  int numSegments = 1;
  double progress = 0;  ///< How far the ring is filled, 0..1.
  FillDirection fillDirection = FillDirection::clockwise;
};

/// The notches to cut, on a surface whose y grows upwards. Those in the filled part of the ring
/// vanish: with 4 segments and a progress of 0.5 the one at three quarters is left.
[[nodiscard]] std::vector<SegmentNotch> segmentNotches(const SegmentedTrack& track);

}  // namespace velloro
