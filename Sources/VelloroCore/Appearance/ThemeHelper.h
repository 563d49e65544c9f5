#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/OxCodableColor.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <type_traits>

namespace velloro {

/// What paints pages and previews of themes, beside the themes themselves.
struct ThemeHelper {
  /// The three rings of an activity summary.
  enum class ActivityRings : std::uint8_t { energy, exercise, stand };
  /// How the bars of a scheme of several colours lie.
  enum class ColorBarsMode : std::uint8_t { angledUpRight, angledUpLeft };
  enum class Context : std::uint8_t {
    taskBackground,
    taskBackgroundSort,
    themePicker,
    shareImage,
    appIcon,
  };
  enum class Neon : std::uint8_t {
    purpleVeryDark,
    purpleDark,
    purpleLight,
    orange,
    pink,
    purpleVeryLight,
  };
  enum class PrideColor : std::uint8_t { blue, purple, red, orange, yellow, green };
};

constexpr auto rawValues(std::type_identity<ThemeHelper::ActivityRings>) {
  return caseNames<ThemeHelper::ActivityRings::stand>();
}
constexpr auto rawValues(std::type_identity<ThemeHelper::ColorBarsMode>) {
  return caseNames<ThemeHelper::ColorBarsMode::angledUpLeft>();
}
constexpr auto rawValues(std::type_identity<ThemeHelper::Context>) {
  return caseNames<ThemeHelper::Context::appIcon>();
}
constexpr auto rawValues(std::type_identity<ThemeHelper::Neon>) {
  return caseNames<ThemeHelper::Neon::purpleVeryLight>();
}
constexpr auto rawValues(std::type_identity<ThemeHelper::PrideColor>) {
  return caseNames<ThemeHelper::PrideColor::green>();
}

/// A colour by its components from 0 to 255.
[[nodiscard]] constexpr OxCodableColor rgb(int red, int green, int blue) {
  return {.r = red / 255.0, .g = green / 255.0, .b = blue / 255.0};
}

[[nodiscard]] constexpr OxCodableColor color(ThemeHelper::ActivityRings ring) {
  switch (ring) {
    using enum ThemeHelper::ActivityRings;
    case energy:
      return rgb(250, 17, 79);
    case exercise:
      return rgb(133, 196, 32);
    case stand:
      return rgb(48, 179, 171);
  }
  return {};
}

[[nodiscard]] constexpr OxCodableColor color(ThemeHelper::Neon tone) {
  switch (tone) {
    using enum ThemeHelper::Neon;
    case purpleVeryDark:
      return rgb(37, 20, 84);
    case purpleDark:
      return rgb(77, 43, 145);
    case purpleLight:
      return rgb(169, 68, 128);
    case orange:
      return rgb(255, 112, 76);
    case pink:
      return rgb(234, 63, 138);
    case purpleVeryLight:
      return rgb(214, 160, 214);
  }
  return {};
}

[[nodiscard]] constexpr OxCodableColor color(ThemeHelper::PrideColor bar) {
  switch (bar) {
    using enum ThemeHelper::PrideColor;
    case blue:
      return rgb(36, 113, 205);
    case purple:
      return rgb(140, 62, 172);
    case red:
      return rgb(224, 52, 58);
    case orange:
      return rgb(245, 130, 36);
    case yellow:
      return rgb(250, 202, 46);
    case green:
      return rgb(72, 166, 82);
  }
  return {};
}

}  // namespace velloro
