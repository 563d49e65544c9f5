#pragma once

#include "OxKit/OxCodableColor.h"
#include "OxKit/Platform.h"
#include "VelloroCore/Appearance/ThemeTypes.h"

namespace velloro {

// Relations between colours. Luminance and contrast are those of the Web Content Accessibility
// Guidelines 2.1; alpha doesn't count.

/// The least contrast of two colours that must be distinguished: of a text and its background, and
/// of shapes or large text (from 18 points) and their background.
inline constexpr double textContrast = 4.5;
inline constexpr double shapeContrast = 3;

/// 0 for black to 1 for white.
[[nodiscard]] double relativeLuminance(const OxCodableColor& color);
/// 1 for equal luminances to 21 for black and white, in either order.
[[nodiscard]] double contrastRatio(const OxCodableColor& a, const OxCodableColor& b);

/// Component by component: `from` at 0, `to` at 1.
[[nodiscard]] OxCodableColor mixed(const OxCodableColor& from, const OxCodableColor& to,
                                   double part);

/// The nearest colour of the same hue with at least this contrast to another: a darker one beside a
/// light colour; beside a dark one a brighter one and, if that isn't enough, a paler one. Up to 4.5
/// there always is one.
///
///     const auto ochre = withContrast({1, 0.9, 0}, {1, 1, 1}, shapeContrast);
///     contrastRatio(ochre, {1, 1, 1}) >= shapeContrast;    // true
[[nodiscard]] OxCodableColor withContrast(const OxCodableColor& color, const OxCodableColor& other,
                                          double ratio);

/// What reads on a colour: white where that is enough for shapes and large text, else a very dark
/// tone of the colour, which is enough for any text.
[[nodiscard]] OxCodableColor foregroundColor(const OxCodableColor& color);

/// A colour as a mode's screens show it: `white` darkens it to a perceived brightness of 0.8,
/// `black` lightens it to one of 0.2, the others leave it.
[[nodiscard]] OxCodableColor adjustBrightness(const OxCodableColor& color, ThemeMode mode);

}  // namespace velloro
