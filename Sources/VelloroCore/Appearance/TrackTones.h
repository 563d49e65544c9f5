#pragma once

#include "OxKit/OxCodableColor.h"
#include "OxKit/Platform.h"

#include <vector>

namespace velloro {

/// What a ring's track lies on.
struct RingGround {
  std::vector<OxCodableColor> disc;  ///< One colour, or those of a gradient.
  OxCodableColor page;               ///< Behind the disc.
  bool isFaded = false;              ///< The ring is drawn at half strength.
};

/// The tones of a track that can be distinguished from each other and from the disc below, also if
/// the ring is faded and the page shows through.
///
///     const RingGround ground{.disc = {{1, 1, 1}}, .page = {1, 0.6, 0}, .isFaded = true};
///     TrackTones::on(ground, {0.4, 0.2, 0}).areApartOn(ground);    // true
struct TrackTones {
  OxCodableColor track;      ///< What is not filled.
  OxCodableColor remaining;  ///< The part of the period that has not come yet.
  OxCodableColor fill;

  /// The softest track that is seen on the disc, and a fill of the ink's colour: deeper where that
  /// is not enough or looks like the page, and in the worst case a tone from the disc's other side.
  /// \param ink What reads on the disc.
  [[nodiscard]] static TrackTones on(const RingGround& ground, const OxCodableColor& ink);

  /// Whether disc, track and fill differ from each other as they are seen, and the fill by
  /// `shapeContrast` from both parts of the track.
  [[nodiscard]] bool areApartOn(const RingGround& ground) const;
};

/// The colour of a badge on a ring: the tone nearest to `color` that stands out from all that it
/// lies on, or the one that does so the most.
/// \param below What the badge touches, as it is drawn; a faded badge lets half of the page
/// through.
[[nodiscard]] OxCodableColor badgeTone(const OxCodableColor& color,
                                       const std::vector<OxCodableColor>& below,
                                       const RingGround& ground);

}  // namespace velloro
