#pragma once

#include "CoreGraphics/CGContext.h"
#include "Foundation/Values/Geometry.h"

#include <memory>
#include <string>

namespace platform {

/// A picture that is kept as shapes, and so can be shown in any size: an SVG file. Texts become the
/// outlines of their glyphs, so that no font is needed to show it.
///
///     const auto picture = CGVectorPicture::svg({100, 50});
///     if (!picture) return;                          // the drawing module is missing
///     picture->context().fillEllipse({{0, 0}, {100, 50}});
///     picture->finish().starts_with("<?xml");        // true
class CGVectorPicture {
 public:
  virtual ~CGVectorPicture() = default;
  CGVectorPicture() = default;
  CGVectorPicture(const CGVectorPicture&) = delete;
  CGVectorPicture& operator=(const CGVectorPicture&) = delete;

  /// None where a side is not above 0, and where the drawing module is missing.
  [[nodiscard]] static std::unique_ptr<CGVectorPicture> svg(CGSize size);

  /// To draw on, one unit to a point; it has no pixels to make an image of.
  [[nodiscard]] virtual CGContext& context() = 0;
  /// The bytes of the file. Nothing can be drawn afterwards.
  [[nodiscard]] virtual std::string finish() = 0;
};

}  // namespace platform
