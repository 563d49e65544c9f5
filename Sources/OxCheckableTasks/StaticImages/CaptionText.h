#pragma once

#include "Foundation/Values/Geometry.h"
#include "OxCheckableTasks/Icons/IconVisualRepresentation.h"
#include "OxKit/Platform.h"
#include "UIKit/NSAttributedString.h"

#include <string>
#include <vector>

namespace platform {
class CGContext;
}

namespace velloro {

/// One line of a ring's caption: its icons and its text, with narrow spaces between them.
struct CaptionLine {
  struct Icon {
    IconVisualRepresentation representation;
    CGColor color;
  };

  std::vector<Icon> leadingIcons = {};
  std::string text = {};
  std::vector<Icon> trailingIcons = {};
  NSAttributedString::Attributes attributes = {};

  /// In a font of so many times the size.
  [[nodiscard]] NSAttributedString inFont(double factor) const;
};

/// The position of a caption in a ring.
struct CaptionPlace {
  double radius = 0;         ///< Of the ring, to the outer edge of its track.
  double trackWidth = 0;     ///< Captions also leave room for a second, narrower track inside it.
  double distance = 0;       ///< From the ring's middle to the middle of the line.
  bool isBesideDot = false;  ///< The dot of a timer runs inside the track, and needs more room.
};

/// By how much a line of that size must shrink for its letters to stay inside the track: 1 for one
/// that fits.
///
///     captionFactor({20, 12}, {.radius = 42, .trackWidth = 6, .distance = 27});    // 1
///     captionFactor({60, 12}, {.radius = 42, .trackWidth = 6, .distance = 27});    // 0.53…
[[nodiscard]] double captionFactor(CGSize line, const CaptionPlace& place);

/// The ring round two captions.
struct CaptionRing {
  CGRect frame;           ///< On a surface whose y grows downwards.
  double radius = 0;      ///< To the outer edge of the track.
  double trackWidth = 0;  ///< 0 without a track.
  double iconHeight = 0;  ///< Of the box in the middle.
  bool hasDot = false;    ///< The dot of a timer runs inside the track.
  double scale = 1;       ///< Pixels per unit of the surface.
};

// Draws a line as large as it may be, halfway between the icon and the inner edge of the track.

void drawBottomCaption(CGContext& context, const CaptionLine& line, const CaptionRing& ring);
void drawTopCaption(CGContext& context, const CaptionLine& line, const CaptionRing& ring);

}  // namespace velloro
