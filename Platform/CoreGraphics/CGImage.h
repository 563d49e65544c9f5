#pragma once

#include "Foundation/Values/Data.h"
#include "Foundation/Values/Error.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace platform {

/// A picture that never changes: rows of pixels from the top down, each 0xAARRGGBB with its colour
/// premultiplied by its alpha. Shared, and drawn again and again at no cost but that of its pixels.
///
///     const CGImage dot(1, 1, {0xFFFF0000});
///     dot.pixel(0, 0);    // 0xFFFF0000
class CGImage {
 public:
  /// \param pixels `width` times `height` of them.
  CGImage(std::size_t width, std::size_t height, std::vector<std::uint32_t> pixels)
      : width_(width), height_(height), pixels_(std::move(pixels)) {}

  /// Reads a PNG of any colour type and depth. Fails for bytes that are none or are damaged, and
  /// for a picture of more than `maximumPixels`: domain "velloro.png", the text says why.
  [[nodiscard]] static Result<std::shared_ptr<const CGImage>> fromPNG(
      std::span<const std::byte> bytes);
  static constexpr std::size_t maximumPixels = std::size_t{1} << 26;

  /// An 8 bit RGBA file. Quick rather than small; reads back as the very same pixels. Absent
  /// without pixels, and where the drawing module is missing.
  [[nodiscard]] std::optional<Data> pngData() const;

  [[nodiscard]] std::size_t width() const { return width_; }
  [[nodiscard]] std::size_t height() const { return height_; }
  [[nodiscard]] std::span<const std::uint32_t> pixels() const { return pixels_; }
  [[nodiscard]] std::uint32_t pixel(std::size_t x, std::size_t y) const {
    return pixels_[y * width_ + x];
  }

 private:
  std::size_t width_;
  std::size_t height_;
  std::vector<std::uint32_t> pixels_;
};

/// Which frame of an animation an image is.
struct AnimationFrame {
  std::uint32_t index = 0;
  std::uint32_t count = 1;  ///< Of all frames.
  std::uint16_t framesPerSecond = 60;
};

/// What one frame adds to an animated PNG
/// (https://www.w3.org/TR/png-3/#apng-frame-based-animation): the pieces of all frames in their
/// order, all of one size, are the file. It runs for ever; what knows no animation shows its first
/// frame. Absent without pixels, for an index that is not below the count, and where the drawing
/// module is missing.
[[nodiscard]] std::optional<Data> animatedPNGPiece(const CGImage& image,
                                                   const AnimationFrame& frame);

}  // namespace platform
