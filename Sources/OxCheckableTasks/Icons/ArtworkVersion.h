#pragma once

namespace velloro {

/// The version of all pictures that are drawn here, for caches: a positive number that is the same
/// in every process, and another one as soon as pictures may come out differently, with the icon
/// table, the installed fonts, the drawing libraries or the source code that draws.
[[nodiscard]] int artworkVersion();

}  // namespace velloro
