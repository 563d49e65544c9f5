#pragma once

#include "OxCheckableTasks/Ring/FillDirection.h"
#include "OxCheckableTasks/Ring/ProgressCalculator.h"

#include <vector>

namespace velloro {

/// A stretch of a circle, as the surface's arc operation takes it: degrees from +x towards +y.
struct ArcAngles {
  double startDegrees = 0;
  double endDegrees = 360;
  bool clockwise = false;  ///< The flag of the arc operation: set, the arc runs against the angles.

  bool operator==(const ArcAngles&) const = default;

  /// All the way round.
  [[nodiscard]] static constexpr ArcAngles fullCircle() { return {}; }
};

/// One stroke of a ring's track.
struct TrackArc {
  enum class Part { fill, background, fadedBackground };

  Part part = Part::fill;
  ArcAngles angles;

  bool operator==(const TrackArc&) const = default;
};

/// The strokes that make a track, in the order in which they are drawn: what is filled, what is
/// open, what is open and faded, each beginning where the last one ends, from the top of the ring.
/// A part of nothing has no stroke; a part that is all there is goes round as a full circle.
///
///     trackArcs({.progress = 0.25, .trackProgress = 0.5}, FillDirection::clockwise).size();
///         // 3: fill 270 to 360, background 0 to 90, faded background 90 to 270
[[nodiscard]] std::vector<TrackArc> trackArcs(const ProgressCalculator& ring,
                                              FillDirection direction);

}  // namespace velloro
