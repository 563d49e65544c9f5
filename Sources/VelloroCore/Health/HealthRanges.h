#pragma once

#include "Foundation/Time/Date.h"
#include "OxKit/Platform.h"

#include <optional>
#include <vector>

namespace velloro {

/// The time of a sample.
struct DateRange {
  Date start;
  Date end;

  /// Absent where the end lies before the start.
  [[nodiscard]] static std::optional<DateRange> from(Date start, Date end);
  /// Seconds.
  [[nodiscard]] double duration() const { return end.timeIntervalSince(start); }

  auto operator<=>(const DateRange&) const = default;
};

/// The same times, in order and apart: ranges that overlap are one.
///
///     const auto merged = withoutOverlap({{now, now + 7200}, {now + 3600, now + 10800}});
///     merged.size();             // 1
///     merged[0].duration();      // 10800
[[nodiscard]] std::vector<DateRange> withoutOverlap(std::vector<DateRange> ranges);

/// The time that ranges cover, each moment once, in seconds.
[[nodiscard]] double totalDuration(std::vector<DateRange> ranges);

/// The nights of sleep: ranges in order, of which those that begin less than `tolerance` seconds
/// after the end of what comes before are one.
[[nodiscard]] std::vector<DateRange> normalizedSegments(std::vector<DateRange> ranges,
                                                        double tolerance);

}  // namespace velloro
