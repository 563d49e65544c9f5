#pragma once

#include <cstdint>
#include <string>

namespace platform {

/// A font by its name and size. An empty name, and one that no installed font has, is the system
/// font.
///
///     const auto caption = UIFont::system(14, UIFont::Weight::bold);
///     caption.withSize(caption.pointSize / 2).pointSize;    // 7
struct UIFont {
  enum class Weight : std::uint16_t {
    ultraLight = 100,
    thin = 200,
    light = 300,
    regular = 400,
    medium = 500,
    semibold = 600,
    bold = 700,
    heavy = 800,
    black = 900,
  };

  std::string name = {};
  double pointSize = 17;
  Weight weight = Weight::regular;

  bool operator==(const UIFont&) const = default;

  [[nodiscard]] static UIFont system(double pointSize, Weight weight = Weight::regular) {
    return {.pointSize = pointSize, .weight = weight};
  }
  [[nodiscard]] UIFont withSize(double points) const {
    return {.name = name, .pointSize = points, .weight = weight};
  }
};

}  // namespace platform
