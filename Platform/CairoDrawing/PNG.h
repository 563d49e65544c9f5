#pragma once

#include "CoreGraphics/CGImage.h"

#include <cstdint>
#include <expected>
#include <memory>
#include <span>
#include <string>

namespace platform {

/// As `CGImage` has them: the failure is libpng's word.
std::expected<std::shared_ptr<const CGImage>, std::string> readPNG(
    std::span<const std::byte> bytes);
std::string writePNG(const CGImage& image);
std::string writeAnimatedPNGPiece(const CGImage& image, const AnimationFrame& frame);

}  // namespace platform
