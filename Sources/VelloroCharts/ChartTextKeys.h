#pragma once

#include "OxKit/LocalizedKey.h"

#include <array>

namespace velloro {

/// The texts of statistics.
namespace chart_text {

inline constexpr LocalizedKey allTime{"TrophyRoom.AllTime", ""};

inline constexpr std::array all{allTime};

}  // namespace chart_text
}  // namespace velloro
