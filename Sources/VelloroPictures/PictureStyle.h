#pragma once

#include "Foundation/Text/Locale.h"
#include "OxKit/OxCodableColor.h"
#include "VelloroCore/Appearance/Theme.h"

#include <optional>

namespace velloro {

/// The colours of a picture, and the language in which it is read.
///
///     const auto style = PictureStyle::of(Theme::hero, {}, true, Locale::fromIdentifier("ar"));
///     style.isRightToLeft();    // true
struct PictureStyle {
  OxCodableColor background;
  OxCodableColor text;
  OxCodableColor secondary;  ///< Of labels.
  OxCodableColor faint;      ///< Of what is empty.
  OxCodableColor accent;     ///< The task's; it can be told from the background.
  OxCodableColor onAccent;   ///< Of texts on it.
  Locale locale = Locale::posix();

  /// On white, or on nearly black. \param taskColor Comes before the theme's.
  [[nodiscard]] static PictureStyle of(const Theme& theme,
                                       const std::optional<OxCodableColor>& taskColor, bool isDark,
                                       const Locale& locale);
  /// The same for another task.
  [[nodiscard]] PictureStyle withAccent(const OxCodableColor& color) const;
  [[nodiscard]] bool isRightToLeft() const { return locale.isRightToLeft(); }
};

}  // namespace velloro
