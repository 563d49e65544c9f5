#include "OxCheckableTasks/Ring/TrackArcs.h"

#include <cmath>

namespace velloro {
namespace {

constexpr double top = 270;
/// Shorter arcs are not seen, and longer ones can't be told from the full circle.
constexpr double leastDegrees = 0.000001;
constexpr double mostDegrees = 359.999999;

struct Share {
  TrackArc::Part part;
  double pct;
};

std::vector<Share> visibleShares(const ProgressCalculator& ring) {
  std::vector<Share> shares;
  for (const Share share :
       {Share{TrackArc::Part::fill, ring.visibleProgressPct()},
        Share{TrackArc::Part::background, ring.visibleTrackBackgroundProgressPct()},
        Share{TrackArc::Part::fadedBackground,
              ring.visibleRemainingTrackBackgroundProgressPct()}}) {
    if (share.pct != 0) shares.push_back(share);
  }
  return shares;
}

double totalPct(const std::vector<Share>& shares) {
  double sum = 0;
  for (const Share& share : shares) sum += share.pct;
  return sum;
}

double withinTurn(double degrees) {
  const double rest = std::fmod(degrees, 360);
  return rest < 0 ? rest + 360 : rest;
}

}  // namespace

std::vector<TrackArc> trackArcs(const ProgressCalculator& ring, FillDirection direction) {
  const std::vector<Share> shares = visibleShares(ring);
  const double sum = totalPct(shares);
  const bool isBackward = direction == FillDirection::antiClockwise;
  std::vector<TrackArc> arcs;
  double angle = 0;
  for (const auto [part, pct] : shares) {
    const double degrees = pct / sum * 360;
    if (degrees < leastDegrees) continue;
    if (degrees > mostDegrees) {
      arcs.push_back({part, ArcAngles::fullCircle()});
      continue;
    }
    const double end = angle + (isBackward ? -degrees : degrees);
    arcs.push_back({part,
                    {.startDegrees = withinTurn(angle + top),
                     .endDegrees = withinTurn(end + top),
                     .clockwise = isBackward}});
    angle = end;
  }
  return arcs;
}

}  // namespace velloro
