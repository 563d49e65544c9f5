#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/EnumSet.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <string_view>

namespace velloro {

/// What narrows an automatic type down: which stages of sleep count, whether one runs or walks, on
/// which side of a time or an amount one must be. `AutomaticTaskType::TypeSpeed`.
enum class TypeSpeed : std::uint8_t {
  walk,
  run,
  timed,  ///< A timer's only one.
  asleepBefore,
  asleepAfter,
  awakeBefore,
  awakeAfter,
  inBedBefore,
  inBedAfter,
  outOfBedBefore,
  outOfBedAfter,
  greaterThan,
  lessThan,
  sleepAsleep,  ///< Asleep, in no stage in particular.
  sleepCore,
  sleepDeep,
  sleepREM,
  inBed,
};

constexpr auto rawValues(std::type_identity<TypeSpeed>) {
  using enum TypeSpeed;
  return rawTexts<TypeSpeed>({{walk, "walk"},
                              {run, "run"},
                              {timed, "timed"},
                              {asleepBefore, "asleep_before"},
                              {asleepAfter, "asleep_after"},
                              {awakeBefore, "awake_before"},
                              {awakeAfter, "awake_after"},
                              {inBedBefore, "in_bed_before"},
                              {inBedAfter, "in_bed_after"},
                              {outOfBedBefore, "out_of_bed_before"},
                              {outOfBedAfter, "out_of_bed_after"},
                              {greaterThan, "greater_than"},
                              {lessThan, "less_than"},
                              {sleepAsleep, "sleep"},
                              {sleepCore, "sleep_core"},
                              {sleepDeep, "sleep_deep"},
                              {sleepREM, "sleep_rem"},
                              {inBed, "in_bed"}});
}

/// In JSON an array of raw values, in the order of the cases.
using TypeSpeeds = EnumSet<TypeSpeed>;

/// How many of a type's speeds one chooses.
enum class SpeedSelectionType : std::uint8_t {
  noSpeed,  ///< There are none.
  single,
  multi,
};

/// The key of the text that stands for a speed where a type needs one and has none.
inline constexpr std::string_view noSpeedKey = "No speed specified";

}  // namespace velloro
