#include "OxCheckableTasks/Ring/ProgressCalculator.h"

#include "OxKit/Numbers.h"

#include <algorithm>

namespace velloro {

double ProgressCalculator::visibleProgressPct() const {
  return std::clamp(progress, 0.0, 1.0);
}

double ProgressCalculator::visibleTrackBackgroundProgressPct() const {
  return progress >= 1 ? 0 : std::clamp(difference(trackProgress, progress), 0.0, 1.0);
}

double ProgressCalculator::visibleRemainingTrackBackgroundProgressPct() const {
  if (progress >= 1) return 0;
  const double shown = visibleProgressPct() + visibleTrackBackgroundProgressPct();
  return std::clamp(difference(1, shown), 0.0, 1.0);
}

}  // namespace velloro
