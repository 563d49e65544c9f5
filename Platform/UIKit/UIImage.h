#pragma once

#include "CoreGraphics/CGImage.h"
#include "Foundation/Values/Geometry.h"

#include <memory>

namespace platform {

/// An image and how many of its pixels make a point.
///
///     UIImage{.cgImage = image, .scale = 2}.size();   // 50 by 50 for 100 by 100 pixels
struct UIImage {
  std::shared_ptr<const CGImage> cgImage;
  double scale = 1;

  /// In points; 0 by 0 without an image.
  [[nodiscard]] CGSize size() const {
    if (!cgImage) return {};
    return {.width = static_cast<double>(cgImage->width()) / scale,
            .height = static_cast<double>(cgImage->height()) / scale};
  }
};

}  // namespace platform
