#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/Platform.h"

namespace velloro {

/// The way in which a ring fills, as it is seen, beginning at its top.
enum class FillDirection { clockwise, antiClockwise };

constexpr auto rawValues(std::type_identity<FillDirection>) {
  return rawTexts<FillDirection>(
      {{FillDirection::clockwise, "cw"}, {FillDirection::antiClockwise, "ccw"}});
}

}  // namespace velloro
