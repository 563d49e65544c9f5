#pragma once

#include "OxKit/OxCodableColor.h"
#include "OxKit/Platform.h"
#include "VelloroCore/Appearance/ThemeTypes.h"

#include <vector>

namespace velloro {

/// The tones of one task's ring: all that follows from a mode and the task's colour. `Theme` gives
/// them out by their uses.
///
/// In the modes `normal` and `alternate` the ring is a disc in the task's colour with a white mark
/// on it, on a light colour a very dark one, and becomes a white disc when the task is done. In
/// `white` and `black` the mark has the task's colour and the disc that of the screen, until the
/// task is done.
///
/// Fills keep `shapeContrast` to both parts of the track, and captions `textContrast` to the disc
/// that they stand on.
struct RingPalette {
  OxCodableColor color;  ///< The task's own.
  // while the task is open
  OxCodableColor center;          ///< The disc, also under the track.
  OxCodableColor ink;             ///< Captions and icon.
  OxCodableColor fill;            ///< Of the track.
  OxCodableColor track;           ///< What is not filled.
  OxCodableColor remainingTrack;  ///< The part of the period that has not come yet.
  // when it is done
  std::vector<OxCodableColor> doneCenter;  ///< A gradient of two in the grand-slam form.
  OxCodableColor doneInk;
  OxCodableColor doneFill;
  // when it is missed: a deep disc; where the mark is dark, the one that a white mark would have
  OxCodableColor missedCenter;
  OxCodableColor missedInk;

  /// Of a task with this colour.
  [[nodiscard]] static RingPalette of(ThemeMode mode, const OxCodableColor& color, bool grandSlam);
};

/// What a screen of the mode `white` or `black` has behind everything.
[[nodiscard]] OxCodableColor screenColor(ThemeMode mode);

}  // namespace velloro
