#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/LocalizedKey.h"
#include "OxKit/OxCodableColor.h"
#include "OxKit/Platform.h"
#include "VelloroCore/Appearance/ThemeTypes.h"

#include <cstdint>
#include <span>
#include <string>
#include <type_traits>

namespace velloro {

/// The colours that a user can give a page of tasks; `Theme::ColorScheme`. A raw value is the name.
enum class ColorScheme : std::uint8_t {
  orange,
  green,
  blue,
  red,
  purple,
  black,
  navy,
  grey,
  olive,
  gold,
  brown,
  royalPurple,
  activityRed,
  activityGreen,
  activityBlue,
  pride,
  redBlue,
  redYellow,
  redGreen,
  greenYellow,
  greenBlue,
  blueYellow,
  pink,
  neon,
  yellow,
};

constexpr auto rawValues(std::type_identity<ColorScheme>) {
  return caseNames<ColorScheme::yellow>();
}

/// That of the program itself.
inline constexpr ColorScheme heroColorScheme = ColorScheme::orange;

/// One colour or several, in the order in which tasks take them. A few are brighter on a watch.
///
///     colors(ColorScheme::redBlue, false).size();    // 2: red and blue
[[nodiscard]] std::span<const OxCodableColor> colors(ColorScheme scheme, bool onWatch);

/// Whether the order of the colours can be reversed: of those with two colours, and `neon`.
[[nodiscard]] constexpr bool supportsAlternateMode(ColorScheme scheme) {
  const bool hasTwoColors = scheme >= ColorScheme::redBlue && scheme <= ColorScheme::blueYellow;
  return hasTwoColors || scheme == ColorScheme::neon;
}

/// The modes that a user can choose.
[[nodiscard]] std::span<const ThemeMode> validModes(ColorScheme scheme);

/// The keys of the titles: "ColorScheme.royalPurple", "ThemeMode.white".
[[nodiscard]] std::string titleKey(ColorScheme scheme);
[[nodiscard]] std::string titleKey(ThemeMode mode);
/// {0} a scheme's title, {1} a mode's: "Royal purple (White)".
inline constexpr LocalizedKey titleInModeKey{"Theme.InMode", "tt"};

/// "Royal purple".
[[nodiscard]] std::string localizedTitle(ColorScheme scheme);
/// "White".
[[nodiscard]] std::string localizedTitle(ThemeMode mode);

}  // namespace velloro
