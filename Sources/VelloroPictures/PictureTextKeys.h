#pragma once

#include "OxKit/LocalizedKey.h"
#include "VelloroCore/Log/PreviousDaysSuccess.h"

#include <array>

namespace velloro {

/// The texts of pictures, beside those of charts.
namespace picture_text {

inline constexpr LocalizedKey allTasks{"Picture.AllTasks", ""};
inline constexpr LocalizedKey currentStreak{"Picture.CurrentStreak", ""};
inline constexpr LocalizedKey daysOfWeek{"Picture.DaysOfWeek", ""};
inline constexpr LocalizedKey timeOfDay{"Picture.TimeOfDay", ""};

/// What a rate looks back at.
struct SuccessKey {
  PreviousSuccessType value;
  LocalizedKey key;
};

inline constexpr SuccessKey success[] = {
    {PreviousSuccessType::last7, {"Picture.Success.last7", ""}},
    {PreviousSuccessType::last30, {"Picture.Success.last30", ""}},
    {PreviousSuccessType::pastMonth, {"Picture.Success.pastMonth", ""}},
    {PreviousSuccessType::pastYear, {"Picture.Success.pastYear", ""}},
    {PreviousSuccessType::allTime, {"Picture.Success.allTime", ""}}};

inline constexpr std::array all{allTasks, currentStreak, daysOfWeek, timeOfDay};

}  // namespace picture_text
}  // namespace velloro
