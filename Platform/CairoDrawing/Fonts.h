#pragma once

#include "CoreGraphics/CGPath.h"

#include <optional>
#include <string>

#include <pango/pangocairo.h>

namespace platform {

/// The fonts of the machine's font folders, with rules of our own: the user's settings and fonts
/// change nothing. One for each thread.
PangoFontMap* threadFontMap();

/// As CoreGraphics/FontGlyph.h has it.
std::optional<CGPath> fontGlyph(const std::string& family, const std::string& glyph);

}  // namespace platform
