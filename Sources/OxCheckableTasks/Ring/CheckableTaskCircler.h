#pragma once

#include "Foundation/Values/Geometry.h"
#include "OxCheckableTasks/Ring/FillDirection.h"
#include "OxCheckableTasks/Ring/SubProgress.h"
#include "OxKit/OxCodableColor.h"

#include <span>

namespace platform {
class CGContext;
}

namespace velloro {

/// All that shows of a ring whose track is drawn, in the units of the surface.
struct TrackedRing {
  CGRect frame;
  double trackWidth = 0;
  FillDirection fillDirection = FillDirection::clockwise;
  double progress = 0;       ///< 0..1.
  double subProgress = 0;    ///< 0..1: within one completion, or of a running timer.
  double trackProgress = 1;  ///< Where the solid part of the open track ends, 0..1.
  int numSegments = 1;
  double notchThickness = 0;
  OxCodableColor trackBackgroundColor = {};
  OxCodableColor trackFadedBackgroundColor = {};
  OxCodableColor trackFillColor = {};
  std::span<const OxCodableColor> centerFillColors = {};
  CheckableTaskSubProgressStyle subProgressStyle = {};
  OxCodableColor subProgressFillColor = {};
  bool useRoundedLineCaps = false;
};

/// What shows of a ring that is checked: its disc, cut by the notches.
struct TracklessRing {
  CGRect frame;
  double trackWidth = 0;
  int numSegments = 1;
  double notchThickness = 0;
  std::span<const OxCodableColor> centerFillColors;
};

/// Draws a task's ring, on a surface whose y grows downwards.
class CheckableTaskCircler {
 public:
  virtual ~CheckableTaskCircler() = default;

  virtual void drawWithTrack(CGContext& context, const TrackedRing& ring) = 0;
  virtual void drawWithoutTrack(CGContext& context, const TracklessRing& ring) = 0;
};

}  // namespace velloro
