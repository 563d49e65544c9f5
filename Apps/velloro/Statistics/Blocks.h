#pragma once

#include <span>
#include <string>

namespace velloro {

// Charts of block characters, of shares from 0 to 1.

/// A column for each share, as high as it; the lowest is a line.
///
///     blockColumns(std::vector{0.0, 0.5, 1.0});    // "▁▅█"
[[nodiscard]] std::string blockColumns(std::span<const double> shares);
/// A bar of so many columns in full, to an eighth of one.
///
///     blockBar(0.5, 5);    // "██▌"
[[nodiscard]] std::string blockBar(double share, int columns);

}  // namespace velloro
