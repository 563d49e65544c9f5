#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "VelloroCore/Appearance/PositionedTheme.h"

#include <string>
#include <vector>

namespace velloro {

/// A ring in one status; colours as "RRGGBB", or "RRGGBBAA" where they are not opaque.
struct RingReport {
  std::string status;
  std::string state;  ///< The status in words: "due".
  bool faded = false;
  std::string fill, track, icon, caption;
  std::vector<std::string> center;

  static constexpr auto codingKeys =
      keys(key("status", &RingReport::status), key("state", &RingReport::state),
           key("faded", &RingReport::faded), key("fill", &RingReport::fill),
           key("track", &RingReport::track), key("center", &RingReport::center),
           key("icon", &RingReport::icon), key("caption", &RingReport::caption));
};

/// A scheme in one mode, and the rings of its first task.
struct ModeReport {
  ThemeMode mode = ThemeMode::normal;
  std::string title;
  std::string background;  ///< A gradient's middle colour.
  std::string text;
  std::vector<RingReport> rings;

  static constexpr auto codingKeys =
      keys(key("mode", &ModeReport::mode), key("title", &ModeReport::title),
           key("background", &ModeReport::background), key("text", &ModeReport::text),
           key("rings", &ModeReport::rings));
};

/// What a colour scheme offers, as `velloro themes` prints it.
struct ThemeReport {
  ColorScheme scheme = ColorScheme::orange;
  std::string title;
  std::vector<std::string> colors;
  std::vector<ModeReport> modes;

  static constexpr auto codingKeys =
      keys(key("scheme", &ThemeReport::scheme), key("title", &ThemeReport::title),
           key("colors", &ThemeReport::colors), key("modes", &ThemeReport::modes));

  [[nodiscard]] static ThemeReport of(ColorScheme scheme, ThemeContext context);

  /// Every mode with its rings.
  [[nodiscard]] std::string text() const;
};

/// One line per scheme.
[[nodiscard]] std::string table(const std::vector<ThemeReport>& reports);

}  // namespace velloro
