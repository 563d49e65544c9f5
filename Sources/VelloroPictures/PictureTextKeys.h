#pragma once

#include "OxKit/LocalizedKey.h"

#include <array>

namespace velloro {

/// The texts of pictures, beside those of charts.
namespace picture_text {

inline constexpr LocalizedKey allTasks{"Picture.AllTasks", ""};
inline constexpr LocalizedKey currentStreak{"Picture.CurrentStreak", ""};
inline constexpr LocalizedKey daysOfWeek{"Picture.DaysOfWeek", ""};
inline constexpr LocalizedKey timeOfDay{"Picture.TimeOfDay", ""};

inline constexpr std::array all{allTasks, currentStreak, daysOfWeek, timeOfDay};

}  // namespace picture_text
}  // namespace velloro
