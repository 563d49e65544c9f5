#pragma once

#include "OxCheckableTasks/Ring/CheckableTaskConstants.h"
#include "OxKit/DeviceType.h"

#include <algorithm>
#include <cmath>

/// The measures, in points, of what is shown beside a ring of a given diameter.
namespace velloro::CheckableTaskConstants {

namespace measures_detail {
/// Of a hundred parts: these have no exact binary fraction, and a product that should be a half or
/// a whole must not miss it.
inline double percent(double diameter, int onOthers, int onMac) {
  const bool isMac = DeviceType::current().family() == DeviceType::Family::mac;
  return diameter * (isMac ? onMac : onOthers) / 100;
}
}  // namespace measures_detail

/// Of the title below a ring; a little larger on a Mac.
///
///     CheckableTaskConstants::titleFontSizeForTaskDiameter(100);    // 13: 16 on a Mac
[[nodiscard]] inline double titleFontSizeForTaskDiameter(double diameter) {
  return std::round(measures_detail::percent(diameter, 13, 16));
}
/// How wide the title's lines may be.
[[nodiscard]] inline double titleLabelWidthForDiameter(double diameter) {
  return std::floor(measures_detail::percent(diameter, 120, 130));
}
/// Of a button beside the ring: never too small for a finger.
[[nodiscard]] inline double actionButtonDiameter(double taskIconDiameter) {
  constexpr double least = 50;
  return std::max(std::round(taskIconDiameter * 35 / 100), least);
}
inline constexpr double actionButtonNormalizedBadgeDiameter = 0.35;
inline constexpr double actionButtonNormalizedContentDiameter = 0.5;

}  // namespace velloro::CheckableTaskConstants
