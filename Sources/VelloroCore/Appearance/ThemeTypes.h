#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/OxCodableColor.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <type_traits>
#include <variant>

namespace velloro {

// The small types of `Theme`, by whose names they are known: `Theme::Mode` and so on.

/// What the screens behind the tasks are: the scheme's colours, the same in the reverse order,
/// white, or black.
enum class ThemeMode : std::uint8_t { normal, alternate, white, black };

constexpr auto rawValues(std::type_identity<ThemeMode>) {
  return caseNames<ThemeMode::black>();
}

/// The place where a task is shown.
enum class ThemeContext : std::uint8_t {
  main,
  appIcon,
  siri,
  notification,
  notificationAttachment,
  appleWatch,
  appleWatchComplication,
  appleWatchSiri,
  appleWatchNotification,
  widget,
};

constexpr auto rawValues(std::type_identity<ThemeContext>) {
  return caseNames<ThemeContext::widget>();
}

/// Whether that is a watch's screen, or any screen of a program that runs on a watch.
[[nodiscard]] bool isOnWatch(ThemeContext context);
/// Whether that is a watch's own face, which has nothing but black behind it.
[[nodiscard]] bool isOnFace(ThemeContext context);

enum class ThemeControlState : std::uint8_t { normal, highlighted, selected, disabled };

constexpr auto rawValues(std::type_identity<ThemeControlState>) {
  return caseNames<ThemeControlState::disabled>();
}

/// Whether the bars of a settings screen are the program's own or the theme's.
enum class ThemeSettingsBarType : std::uint8_t { main, theme };

constexpr auto rawValues(std::type_identity<ThemeSettingsBarType>) {
  return caseNames<ThemeSettingsBarType::theme>();
}

struct ThemeColor {
  OxCodableColor color;

  bool operator==(const ThemeColor&) const = default;
};

/// From the top left to the bottom right.
struct ThemeGradient {
  OxCodableColor from;
  OxCodableColor to;

  bool operator==(const ThemeGradient&) const = default;
  /// Half way between them.
  [[nodiscard]] OxCodableColor mid() const;
};

/// What lies behind a page of tasks.
struct ThemeBackgroundType {
  struct Flat {
    OxCodableColor color;
    bool operator==(const Flat&) const = default;
  };
  /// Bars of all the pride colours over a colour.
  struct Pride {
    OxCodableColor color;
    bool grandSlam = false;
    bool operator==(const Pride&) const = default;
  };

  std::variant<Flat, ThemeGradient, Pride> value;

  bool operator==(const ThemeBackgroundType&) const = default;

  [[nodiscard]] static ThemeBackgroundType flat(const OxCodableColor& color) {
    return {Flat{color}};
  }
  [[nodiscard]] static ThemeBackgroundType gradient(const ThemeGradient& gradient) {
    return {gradient};
  }
  [[nodiscard]] static ThemeBackgroundType pride(const OxCodableColor& color, bool grandSlam) {
    return {Pride{color, grandSlam}};
  }
  /// One colour for all of it: a gradient's is `mid`.
  [[nodiscard]] OxCodableColor plainColor() const;
};

/// The colour of a gauge beside a watch's face; `automatic` leaves it to the face.
struct ThemeGaugeColor {
  struct Automatic {
    bool operator==(const Automatic&) const = default;
  };

  std::variant<OxCodableColor, Automatic> value;

  bool operator==(const ThemeGaugeColor&) const = default;

  [[nodiscard]] static ThemeGaugeColor custom(const OxCodableColor& color) { return {color}; }
  [[nodiscard]] static ThemeGaugeColor automatic() { return {Automatic{}}; }
};

}  // namespace velloro
