#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Values/Hasher.h"
#include "OxKit/OxCodableColor.h"
#include "OxKit/Platform.h"
#include "VelloroCore/Appearance/ColorScheme.h"
#include "VelloroCore/Appearance/RingPalette.h"
#include "VelloroCore/Appearance/TaskDisplayOrder.h"
#include "VelloroCore/Appearance/ThemeTypes.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velloro {

struct PositionedTheme;

/// What every colour of the program follows from.
///
///     const Theme theme{.colorScheme = ColorScheme::redBlue, .mode = ThemeMode::white};
///     theme.color().toHex();                             // "C73035"
///     theme.localizedTitle();                            // "Red and blue (White)"
///     theme.trackFillColor({task.displayOrder, task.color, Theme::Context::notification});
struct Theme {
  using ColorScheme = velloro::ColorScheme;
  using Mode = ThemeMode;
  using Context = ThemeContext;
  using ControlState = ThemeControlState;
  using SettingsBarType = ThemeSettingsBarType;
  using Color = ThemeColor;
  using Gradient = ThemeGradient;
  using BackgroundType = ThemeBackgroundType;
  using GaugeColor = ThemeGaugeColor;
  using TaskColor = std::optional<OxCodableColor>;
  using Colors = std::vector<OxCodableColor>;

  ColorScheme colorScheme = heroColorScheme;
  Mode mode = Mode::normal;
  bool grandSlam = false;  ///< The deeper form, for a day on which all was done.

  static const Theme hero;  ///< That of the program itself.

  bool operator==(const Theme&) const = default;
  static constexpr auto codingKeys =
      keys(key("colorScheme", &Theme::colorScheme, initialWhenUnknown),
           key("mode", &Theme::mode, initialWhenUnknown), key("grandSlam", &Theme::grandSlam));

  /// The text that is kept in the settings: "redBlue", "redBlue.white", "redBlue.white.grandSlam".
  [[nodiscard]] std::string stringValue() const;
  /// Absent for a text that is none.
  [[nodiscard]] static std::optional<Theme> fromStringValue(std::string_view text);

  /// Of a page to which the user gave no theme: each of the first four has its own.
  [[nodiscard]] static Theme defaultTheme(TaskPageNumber pageNumber);
  /// Of the tasks that a filter lets through, by the filter's identity; it is absent for no filter.
  [[nodiscard]] static Theme defaultTheme(const std::optional<std::string>& filter);

  /// The same in another mode; in `normal` where the scheme doesn't have that mode.
  [[nodiscard]] Theme withMode(Mode other) const;
  [[nodiscard]] PositionedTheme positioned(TaskDisplayOrder order) const;

  [[nodiscard]] std::string localizedTitle() const;
  /// The scheme's first colour, darker by 0.1 in the grand-slam form.
  [[nodiscard]] OxCodableColor color() const;
  /// What lies behind the tasks of a page shown there.
  [[nodiscard]] BackgroundType backgroundType(Context context = Context::main) const;
  /// Of the filled part of a track; the schemes of the activity rings have rounded ones.
  [[nodiscard]] bool useRoundedLineCaps() const;

  /// One task: `order` chooses among the scheme's colours, `taskColor` comes before all of these,
  /// and `context` is where the task is shown. Faces of a watch are black in any mode.
  struct Place {
    TaskDisplayOrder order;
    TaskColor taskColor;
    Context context = Context::main;
  };
  /// The tones from which the ring's colours come.
  [[nodiscard]] RingPalette palette(const Place& at) const;

  // A task's texts on the page: `shapeContrast` to what is behind them, as they are large.
  [[nodiscard]] OxCodableColor taskTextColor(const Place& at) const;
  [[nodiscard]] OxCodableColor taskIconColor(const Place& at) const;
  [[nodiscard]] OxCodableColor taskQuantityTextColor(const Place& at) const;

  // The ring of an open task.
  [[nodiscard]] OxCodableColor trackFillColor(const Place& at) const;
  [[nodiscard]] OxCodableColor trackBackgroundColor(const Place& at) const;
  [[nodiscard]] OxCodableColor trackRemainingBackgroundColor(const Place& at) const;
  [[nodiscard]] OxCodableColor captionColor(const Place& at) const;
  [[nodiscard]] OxCodableColor topCaptionColor(const Place& at) const;
  [[nodiscard]] Colors centerFillColorsWhenUnchecked(const Place& at) const;
  [[nodiscard]] OxCodableColor imageMaskColorWhenUnchecked(const Place& at) const;
  [[nodiscard]] OxCodableColor notchColor(const Place& at) const;
  /// The dot of a running timer; a negative task's ring looks as if it were done.
  [[nodiscard]] OxCodableColor checkableTaskTimerColor(const Place& at, bool isNegative) const;

  // When it is done.
  [[nodiscard]] OxCodableColor captionColorWhenCompleted(const Place& at) const;
  [[nodiscard]] OxCodableColor topCaptionColorWhenCompleted(const Place& at) const;
  [[nodiscard]] OxCodableColor trackBackgroundColorWhenCompleted(const Place& at) const;
  [[nodiscard]] OxCodableColor trackRemainingBackgroundColorWhenCompleted(const Place& at) const;
  [[nodiscard]] Colors centerFillColorsWhenCompleted(const Place& at) const;
  [[nodiscard]] OxCodableColor imageMaskColorWhenCompleted(const Place& at) const;
  [[nodiscard]] OxCodableColor trackFillColorWhenCompletedNegative(const Place& at) const;

  // When a negative task is missed.
  [[nodiscard]] OxCodableColor imageMaskColorWhenMissedNegative(const Place& at) const;
  [[nodiscard]] OxCodableColor centerFillColorWhenMissedNegative(const Place& at) const;

  // Other screens: light ones, and dark ones in the mode `black`.
  [[nodiscard]] OxCodableColor helpScreenTextColor() const;
  [[nodiscard]] OxCodableColor helpScreenHeadingColor() const;
  [[nodiscard]] OxCodableColor navigationBarTintColor() const;
  [[nodiscard]] OxCodableColor toolbarTintColor() const;
  [[nodiscard]] OxCodableColor toolbarBarTintColor() const;
  [[nodiscard]] OxCodableColor tableCellBackgroundColor() const;
  [[nodiscard]] OxCodableColor tableCellPrimaryTextColor() const;
  [[nodiscard]] OxCodableColor tableCellSecondaryTextColor() const;
  [[nodiscard]] OxCodableColor tableCellImageMaskColor(const TaskColor& taskColor) const;
  [[nodiscard]] OxCodableColor tableCellImageCircleColor(const TaskColor& taskColor) const;
  [[nodiscard]] OxCodableColor centerFillColorForSiriConfiguration() const;
};

inline constexpr Theme Theme::hero{};

}  // namespace velloro
