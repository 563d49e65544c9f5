#pragma once

#include <cstddef>
#include <vector>

namespace velloro::CheckableTaskConstants {

inline constexpr double defaultIconPaddingScale = 0.45;   ///< Side of the icon's box per width.
inline constexpr double normalizedTrackWidth = 0.067;     ///< Width of the track per width.
inline constexpr double normalizedNotchThickness = 0.03;  ///< Gap between segments per width.

/// Where along a gradient its colours stand, 0 at its start and 1 at its end: 0.0 and 0.7 for two
/// colours, any other number evenly spread, none for none.
[[nodiscard]] std::vector<double> gradientLocations(std::size_t numColors);
/// The same for the gradient inside the track: 0.3 and 0.8 for two colours.
[[nodiscard]] std::vector<double> gradientOutlineLocations(std::size_t numColors);

}  // namespace velloro::CheckableTaskConstants
