#pragma once

#include "Foundation/Values/Geometry.h"
#include "OxKit/Platform.h"
#include "UIKit/NSAttributedString.h"
#include "UIKit/TextLayout.h"

#include <functional>
#include <memory>
#include <vector>

namespace velloro {

/// One line of a ring's caption: what there is of icons and text, with a narrow space between.
[[nodiscard]] NSAttributedString joinedCaption(const std::vector<NSAttributedString>& items,
                                               const NSAttributedString::Attributes& attributes);

/// Where a caption stands in a ring.
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
///     captionFactor({60, 12}, {.radius = 42, .trackWidth = 6, .distance = 27});    // 0.53
[[nodiscard]] double captionFactor(CGSize line, const CaptionPlace& place);

/// The layout of a caption, as large as it may be. None for an empty line.
/// \param line The line in fonts of so many times their size.
[[nodiscard]] std::shared_ptr<TextLayout> layOutCaption(
    const std::function<NSAttributedString(double factor)>& line, const CaptionPlace& place,
    double scale);

}  // namespace velloro
