#pragma once

#include "CoreGraphics/CGImage.h"
#include "CoreGraphics/CGPath.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

namespace platform {

/// The outline of one glyph of an icon font, a family of a single face, in a box of 1 by 1 with y
/// growing downwards: the font's line is as high as the box, and the glyph is centred in it. Absent
/// if no installed font is of that family, if the font has no such glyph, and for a glyph without
/// an outline.
///
///     fontGlyph("Material Design Icons", "water");
///     fontGlyph("Material Design Icons", "U+F0003");
///
/// \param glyph The glyph's name in the font, or its code point as "U+" and hexadecimal digits.
[[nodiscard]] std::optional<CGPath> fontGlyph(std::string_view family, std::string_view glyph);

/// A number that changes when a font is installed, replaced or removed, and with the libraries that
/// draw; 0 where the drawing module is missing.
[[nodiscard]] std::uint64_t drawingFingerprint();

/// A path that lies in a box of 1 by 1 as a square mask with so many pixels a side: opaque black
/// within the path. None where `CGContext::bitmap` gives none.
[[nodiscard]] std::shared_ptr<const CGImage> maskOfUnitPath(const CGPath& path, std::size_t pixels);

/// The glyph as such a mask; none where either of the two gives none.
[[nodiscard]] std::shared_ptr<const CGImage> iconGlyph(std::string_view family,
                                                       std::string_view glyph, std::size_t pixels);

}  // namespace platform
