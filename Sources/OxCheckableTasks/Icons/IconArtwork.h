#pragma once

#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "OxKit/OxCodableColor.h"
#include "UIKit/UIImage.h"

#include <optional>

namespace velloro {

/// The picture of an icon in a square of so many points a side. Drawn from the fonts that are
/// installed; an icon without artwork shows the first letters of its name.
struct IconArtwork {
  const IconDisplayRepresentation& representation;
  double side = 0;   ///< Points.
  double scale = 1;  ///< Pixels per point.

  /// As a mask: opaque black where the icon is. An emoji keeps its colours. No image where the
  /// drawing module is missing.
  [[nodiscard]] UIImage image() const;
  /// In one colour; an emoji keeps its own, but for the alpha.
  [[nodiscard]] UIImage masked(const OxCodableColor& color) const;
};

/// The image turned and with what lies over it, in a bitmap of the same size.
[[nodiscard]] UIImage applyOrientationAndOverlay(
    const UIImage& image, const IconVisualRepresentation::DisplayProperties& properties,
    const OxCodableColor& overlayColor);

/// The size in which an image fits into a box: never enlarged, and as wide for its height as it is.
[[nodiscard]] CGSize calculateImageSize(CGSize image, CGSize box);
/// An image of that size in the middle of a frame, its origin as many whole units from the frame's.
[[nodiscard]] CGRect iconFrame(CGSize image, CGRect frame);

}  // namespace velloro
