#include "VelloroCore/Appearance/ColorContrast.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velloro {
namespace {

constexpr OxCodableColor white{.r = 1, .g = 1, .b = 1};

double linear(double component) {
  const double c = std::clamp(component, 0.0, 1.0);
  return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

/// On the way from a colour to black at 1.
OxCodableColor darker(OxCodableColor::HSB hsb, double way, double alpha) {
  hsb.brightness *= 1 - way;
  return OxCodableColor::fromHSB(hsb, alpha);
}

/// On the way from a colour to its brightest tone at 0.5 and to white at 1.
OxCodableColor lighter(OxCodableColor::HSB hsb, double way, double alpha) {
  hsb.brightness += (1 - hsb.brightness) * std::min(way * 2, 1.0);
  hsb.saturation *= 1 - std::max(way * 2 - 1, 0.0);
  return OxCodableColor::fromHSB(hsb, alpha);
}

}  // namespace

double relativeLuminance(const OxCodableColor& color) {
  return 0.2126 * linear(color.r) + 0.7152 * linear(color.g) + 0.0722 * linear(color.b);
}

double contrastRatio(const OxCodableColor& a, const OxCodableColor& b) {
  const auto [less, more] = std::minmax({relativeLuminance(a), relativeLuminance(b)});
  return (more + 0.05) / (less + 0.05);
}

OxCodableColor mixed(const OxCodableColor& from, const OxCodableColor& to, double part) {
  return {.r = std::lerp(from.r, to.r, part),
          .g = std::lerp(from.g, to.g, part),
          .b = std::lerp(from.b, to.b, part),
          .a = std::lerp(from.a, to.a, part)};
}

OxCodableColor withContrast(const OxCodableColor& color, const OxCodableColor& other,
                            double ratio) {
  const bool isLight = contrastRatio(other, OxCodableColor{}) > contrastRatio(other, white);
  const bool isOnTheFarSide = isLight == (relativeLuminance(color) < relativeLuminance(other));
  if (isOnTheFarSide && contrastRatio(color, other) >= ratio) return color;
  const auto hsb = color.toHSB();
  const auto at = [&](double way) {
    return isLight ? darker(hsb, way, color.a) : lighter(hsb, way, color.a);
  };
  double tooNear = 0;
  double enough = 1;
  for (int i = 0; i < 10; ++i) {
    const double middle = (tooNear + enough) / 2;
    const OxCodableColor tried = at(middle);
    const bool isBeyond = isLight == (relativeLuminance(tried) < relativeLuminance(other));
    (isBeyond && contrastRatio(tried, other) >= ratio ? enough : tooNear) = middle;
  }
  return at(enough);
}

OxCodableColor foregroundColor(const OxCodableColor& color) {
  if (contrastRatio(color, white) >= shapeContrast) return white;
  auto hsb = color.toHSB();
  hsb.brightness = 0.17;
  return OxCodableColor::fromHSB(hsb);
}

OxCodableColor adjustBrightness(const OxCodableColor& color, ThemeMode mode) {
  switch (mode) {
    case ThemeMode::normal:
    case ThemeMode::alternate:
      return color;
    case ThemeMode::white:
      return color.darkenTo(0.8);
    case ThemeMode::black:
      return color.lightenTo(0.2);
  }
  return color;
}

}  // namespace velloro
