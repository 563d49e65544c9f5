#pragma once

#include "Foundation/Time/Date.h"
#include "Foundation/Time/TimeZone.h"
#include "OxDateTime/HHMMSS.h"
#include "OxKit/Platform.h"

#include <optional>

namespace velloro {

/// Hours of each day in which nothing is shown; what comes in them is shown at their end.
///
///     const QuietHours night{.from = {.h = 22}, .to = {.h = 7}};
///     night.contains({.h = 23});    // true
///     night.contains({.h = 7});     // false
struct QuietHours {
  HHMMSS from, to;

  bool operator==(const QuietHours&) const = default;
  [[nodiscard]] bool contains(HHMMSS time) const {
    return from <= to ? from <= time && time < to : from <= time || time < to;
  }
  /// When the hours that hold `now` end.
  [[nodiscard]] Date end(Date now, TimeZone zone) const;
};

/// The user's wish for peace until a moment, kept in the program's own defaults, so that
/// `velloro agent pause` reaches an agent that is running.
struct AgentPause {
  /// When it ends; absent where there is none. A distant one has no end.
  [[nodiscard]] static std::optional<Date> end(Date now);
  static void begin(Date end);
  /// Returns whether there was one.
  static bool remove(Date now);

  static constexpr const char* key = "Agent.PausedUntil";
};

/// Until when nothing is to be shown; absent where it may be.
[[nodiscard]] std::optional<Date> quietUntil(const std::optional<QuietHours>& hours, Date now,
                                             TimeZone zone);

}  // namespace velloro
