#include "VelloroPictures/PictureStyle.h"

#include "VelloroCore/Appearance/ColorContrast.h"

namespace velloro {
namespace {

constexpr OxCodableColor white{.r = 1, .g = 1, .b = 1};
constexpr OxCodableColor nearlyBlack{.r = 0.075, .g = 0.08, .b = 0.09};
constexpr double faintPart = 0.09;
constexpr double secondaryPart = 0.62;

}  // namespace

PictureStyle PictureStyle::of(const Theme& theme, const std::optional<OxCodableColor>& taskColor,
                              bool isDark, const Locale& locale) {
  PictureStyle style{.background = isDark ? nearlyBlack : white,
                     .text = isDark ? white : nearlyBlack,
                     .secondary = {},
                     .faint = {},
                     .accent = {},
                     .onAccent = {},
                     .locale = locale};
  style.secondary = mixed(style.background, style.text, secondaryPart);
  style.faint = mixed(style.background, style.text, faintPart);
  return style.withAccent(taskColor.value_or(theme.color()));
}

PictureStyle PictureStyle::withAccent(const OxCodableColor& color) const {
  PictureStyle style = *this;
  style.accent = withContrast(color, background, shapeContrast);
  style.onAccent = foregroundColor(style.accent);
  return style;
}

}  // namespace velloro
