#include "velloro/Statistics/Blocks.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velloro {
namespace {

constexpr std::array heights = {"▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
constexpr std::array widths = {"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};

}  // namespace

std::string blockColumns(std::span<const double> shares) {
  std::string text;
  for (const double share : shares) {
    const double level = std::clamp(share, 0.0, 1.0) * (heights.size() - 1);
    text += heights[static_cast<std::size_t>(std::lround(level))];
  }
  return text;
}

std::string blockBar(double share, int columns) {
  const auto eighths =
      static_cast<std::size_t>(std::lround(std::clamp(share, 0.0, 1.0) * columns * 8));
  std::string text;
  for (std::size_t i = 0; i < eighths / 8; ++i) text += heights.back();
  return text + widths[eighths % 8];
}

}  // namespace velloro
