#include "OxCheckableTasks/Ring/SegmentNotches.h"

#include <cmath>
#include <numbers>

namespace velloro {
namespace {

/// Forgives a progress that misses a segment's end by binary rounding.
constexpr double slack = 0.0001;

bool isInFilledPart(int index, int done, double progress) {
  return done < 1 ? progress > 0 && index == 0 : index <= done;
}

SegmentNotch notch(const SegmentedTrack& track, int index) {
  const double angle = index * 2 * std::numbers::pi / track.numSegments;
  const double side = track.fillDirection == FillDirection::clockwise ? 1 : -1;
  const double radius = track.radiusAtTrackCenter + track.trackWidth / 2;
  const CGPoint center = track.center;
  const CGPoint outer{.x = center.x + side * std::sin(angle) * radius,
                      .y = center.y + std::cos(angle) * radius};
  const double depth = track.trackWidth / track.radiusAtTrackCenter;
  return {.outer = outer,
          .inner = {.x = outer.x + depth * (center.x - outer.x),
                    .y = outer.y + depth * (center.y - outer.y)}};
}

}  // namespace

std::vector<SegmentNotch> segmentNotches(const SegmentedTrack& track) {
  const int done = static_cast<int>(track.progress * track.numSegments + slack);
  std::vector<SegmentNotch> notches;
  for (int index = 0; index < track.numSegments; ++index) {
    if (!isInFilledPart(index, done, track.progress)) notches.push_back(notch(track, index));
  }
  return notches;
}

}  // namespace velloro
