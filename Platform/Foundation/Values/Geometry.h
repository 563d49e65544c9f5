#pragma once

namespace platform {

/// A place in points, y growing downwards.
struct CGPoint {
  double x = 0;
  double y = 0;

  bool operator==(const CGPoint&) const = default;

  /// The place as a reader from right to left sees it, in a container of that width: with `rtl` it
  /// is mirrored from left to right, otherwise it stays.
  ///
  ///     CGPoint{10, 5}.transpose(true, 100);     // CGPoint{90, 5}
  [[nodiscard]] constexpr CGPoint transpose(bool rtl, double containerWidth) const {
    return {.x = rtl ? containerWidth - x : x, .y = y};
  }
};

struct CGSize {
  double width = 0;
  double height = 0;

  bool operator==(const CGSize&) const = default;
};

struct CGRect {
  CGPoint origin;  ///< The left upper corner.
  CGSize size;

  bool operator==(const CGRect&) const = default;
};

}  // namespace platform
