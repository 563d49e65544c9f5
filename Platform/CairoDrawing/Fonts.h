#pragma once

#include "CoreGraphics/CGPath.h"

#include <cstdint>
#include <optional>
#include <string>

#include <pango/pangocairo.h>

namespace platform {

/// The fonts of the machine's font folders and of the user's (`fonts` in the XDG data folders, and
/// ~/.fonts), with rules of our own: the user's font settings change nothing. One for each thread.
PangoFontMap* threadFontMap();

/// Of the folders that have fonts, and of the libraries that draw with them.
std::uint64_t fontsFingerprint();

/// As CoreGraphics/FontGlyph.h has it.
std::optional<CGPath> fontGlyph(const std::string& family, const std::string& glyph);

}  // namespace platform
