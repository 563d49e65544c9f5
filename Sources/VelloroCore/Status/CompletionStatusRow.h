#pragma once

#include "VelloroCore/Status/CompletionStatus.h"
#include "VelloroCore/Status/StreakRecord.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace velloro {

/// What follows from each status; where no status is given, it stays.
namespace completion_status_detail {

using Status = CompletionStatus::Status;
using enum Status::Kind;
using enum SkipMode;
using enum RunChange;

struct Row {
  Status::Kind kind;
  std::optional<bool> isSkip;  ///< Of its mode; absent for either, and where there is no mode.
  std::optional<Status> uncheckedStatus;
  std::optional<Status> completedStatus;
  RunChange whenPeriodEnds;

  [[nodiscard]] constexpr bool holds(const Status& status) const {
    const SkipMode mode = status.skipMode.value_or(willMissWithoutIndicator);
    return status.kind == kind && velloro::isSkip(mode) == isSkip.value_or(velloro::isSkip(mode));
  }
};

inline constexpr bool willMiss = false, willSkip = true;
inline constexpr std::nullopt_t anyMode = std::nullopt, same = std::nullopt;
inline constexpr Status open = Status::positiveIncomplete(willMissWithoutIndicator);
inline constexpr Status clean = Status::negativeComplete(willMissWithoutIndicator);
inline constexpr Status allowed = Status::negativeComplete(willSkipWithIndicator);

// A completed period changed the run when it was completed; nothing is left for its end.
inline constexpr Row rows[] = {
    {positiveIncomplete, willMiss, same, Status::positiveComplete, reset},
    {positiveIncomplete, willSkip, same, Status::positiveComplete, unchanged},
    {negativeComplete, willMiss, same, Status::negativeAllowedMiss, increment},
    {negativeComplete, willSkip, same, Status::negativeMiss, increment},
    {positiveComplete, anyMode, open, same, unchanged},
    {positiveMiss, anyMode, open, same, reset},
    {positiveSkip, anyMode, open, same, unchanged},
    {negativeMiss, anyMode, clean, same, startAgain},
    {negativeAllowedMiss, anyMode, allowed, same, increment},
};

inline const Row& rowOf(const Status& status) {
  return *std::ranges::find_if(rows, [&](const Row& row) { return row.holds(status); });
}

}  // namespace completion_status_detail
}  // namespace velloro
