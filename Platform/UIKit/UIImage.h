#pragma once

#include "CoreGraphics/CGImage.h"
#include "Foundation/Values/Geometry.h"

#include <memory>

namespace platform {

/// An image and how many of its pixels make a point.
///
///     UIImage{.cgImage = CGContext::bitmap(9, 9)->makeImage(), .scale = 2}.size().width;  // 4.5
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
