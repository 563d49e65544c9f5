#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Time/Date.h"

namespace platform {

/// A stretch of time: the instant at which it begins, and its length in seconds.
///
///     const DateInterval interval{.start = Date::now(), .duration = 90};
///     interval.end() == Date::now() + 90;     // true
///
/// In JSON {"start": …, "duration": 90}.
struct DateInterval {
  Date start = {};
  TimeInterval duration = 0;

  [[nodiscard]] constexpr Date end() const { return start + duration; }

  bool operator==(const DateInterval&) const = default;
  static constexpr auto codingKeys =
      keys(key("start", &DateInterval::start), key("duration", &DateInterval::duration));
};

}  // namespace platform
