#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/Platform.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace velloro {

/// The side of an image that is shown on top, mirrored or not; stored as an integer from 0 to 7.
enum class OxImageOrientation : std::uint8_t {
  up,
  down,
  left,
  right,
  upMirrored,
  downMirrored,
  leftMirrored,
  rightMirrored,
};

/// `OxImageOrientation::FlipType`: what a person can do to an image.
enum class FlipType : std::uint8_t {
  horizontal,
  vertical,
  rotateClockwise,
  rotateCounterClockwise,
};

constexpr auto rawValues(std::type_identity<OxImageOrientation>) {
  using enum OxImageOrientation;
  return rawIntegers<OxImageOrientation>({{up, 0},
                                          {down, 1},
                                          {left, 2},
                                          {right, 3},
                                          {upMirrored, 4},
                                          {downMirrored, 5},
                                          {leftMirrored, 6},
                                          {rightMirrored, 7}});
}

constexpr auto rawValues(std::type_identity<FlipType>) {
  return caseNames<FlipType::rotateCounterClockwise>();
}

inline constexpr OxImageOrientation defaultOrientation = OxImageOrientation::up;

namespace image_orientation_detail {
using enum OxImageOrientation;
/// What up, down, left, right and the same four mirrored become.
using Turns = std::array<OxImageOrientation, 8>;
// clang-format off
inline constexpr std::array<Turns, 4> turns = {
    Turns{upMirrored, downMirrored, rightMirrored, leftMirrored, up, down, right, left},
    Turns{downMirrored, upMirrored, leftMirrored, rightMirrored, down, up, left, right},
    Turns{right, left, up, down, rightMirrored, leftMirrored, upMirrored, downMirrored},
    Turns{left, right, down, up, leftMirrored, rightMirrored, downMirrored, upMirrored},
};
// clang-format on
}  // namespace image_orientation_detail

/// The orientation after a flip or a quarter turn.
///
///     reorient(OxImageOrientation::left, FlipType::horizontal);   // rightMirrored
[[nodiscard]] constexpr OxImageOrientation reorient(OxImageOrientation orientation, FlipType flip) {
  return image_orientation_detail::turns[static_cast<std::size_t>(flip)]
                                        [static_cast<std::size_t>(orientation)];
}

}  // namespace velloro
