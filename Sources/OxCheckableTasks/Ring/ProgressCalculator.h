#pragma once

namespace velloro {

/// What shares of a ring's track are seen filled, open and faded. They add up to 1.
///
///     const ProgressCalculator ring{.progress = 0.25, .trackProgress = 0.5};
///     ring.visibleProgressPct();                            // 0.25
///     ring.visibleTrackBackgroundProgressPct();             // 0.25
///     ring.visibleRemainingTrackBackgroundProgressPct();    // 0.5
struct ProgressCalculator {
  double progress = 0;       ///< How far the ring is filled; counts as the nearer end outside 0..1.
  double trackProgress = 1;  ///< Where the solid part of the open track ends, 0..1.

  [[nodiscard]] double visibleProgressPct() const;
  /// 0 on a full ring.
  [[nodiscard]] double visibleTrackBackgroundProgressPct() const;
  /// 0 on a full ring.
  [[nodiscard]] double visibleRemainingTrackBackgroundProgressPct() const;
};

}  // namespace velloro
