#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <type_traits>

namespace velloro {

/// What an unfinished period turns into if nothing more happens; `TaskFrequency::SkipMode`. An
/// indicator is shown if the user may want to know that this is the last chance, or that the task
/// is not due on this day.
enum class SkipMode : std::int8_t {
  willMissWithIndicator,
  willMissWithoutIndicator,
  willSkipWithIndicator,
  willSkipWithoutIndicator,
};

constexpr auto rawValues(std::type_identity<SkipMode>) {
  using enum SkipMode;
  return rawTexts<SkipMode>({{willMissWithIndicator, "mwi"},
                             {willMissWithoutIndicator, "mwoi"},
                             {willSkipWithIndicator, "swi"},
                             {willSkipWithoutIndicator, "swoi"}});
}

[[nodiscard]] constexpr bool isSkip(SkipMode mode) {
  return mode == SkipMode::willSkipWithIndicator || mode == SkipMode::willSkipWithoutIndicator;
}

}  // namespace velloro
