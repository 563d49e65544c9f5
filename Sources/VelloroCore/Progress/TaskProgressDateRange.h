#pragma once

#include "Foundation/Time/Date.h"
#include "Foundation/Time/TimeZone.h"
#include "OxDateTime/StandIns.h"
#include "VelloroCore/Frequency/DatedPeriod.h"
#include "VelloroCore/Progress/TaskProgressDiscrete.h"
#include "VelloroCore/Progress/TaskProgressType.h"

#include <optional>

namespace velloro {

/// A progress that grows with time alone, from the beginning of a period to its end; see
/// `TaskProgress`. It has no steps, so what is derived from it is a `TaskProgressDiscrete` of one.
///
///     // Noon in Berlin, of a day that begins at midnight
///     const auto progress = TaskProgressDateRange::from(
///         {.period = today, .timeZone = berlin, .currentDate = now - 3600, .enabled = true});
///     progress.progressPct(now);    // 0.5: at any time
struct TaskProgressDateRange {
  static constexpr TaskProgressType type = TaskProgressType::dateRange;

  HHMMSS startOfDay = HHMMSS::midnight;
  TimeZone timeZone = TimeZone::gmt();
  double scale = 1;                      ///< The progress at the end; 0 keeps it at 0.
  std::optional<Date> currentDate = {};  ///< Absent for a progress that follows the clock.
  DatedPeriod period;

  struct Range {
    DatedPeriod period;
    HHMMSS startOfDay = HHMMSS::midnight;
    TimeZone timeZone = TimeZone::gmt();
    std::optional<Date> currentDate = {};
    bool enabled = true;
  };
  /// The progress through a range, to 1 if that is enabled and always 0 if not.
  [[nodiscard]] static TaskProgressDateRange from(const Range& range);

  bool operator==(const TaskProgressDateRange&) const = default;
  static constexpr auto codingKeys =
      keys(key("startOfDay", &TaskProgressDateRange::startOfDay, initialWhenUnknown),
           key("timeZone", &TaskProgressDateRange::timeZone, whenUnknown(&timeZoneStandIn)),
           key("scale", &TaskProgressDateRange::scale, initialWhenUnknown),
           key("currentDate", &TaskProgressDateRange::currentDate),
           key("period", &TaskProgressDateRange::period));

  /// The instant at which the first day begins.
  [[nodiscard]] Date start() const;
  /// The instant at which the day behind the last one begins.
  [[nodiscard]] Date end() const;

  /// At an instant, whatever `currentDate` says.
  [[nodiscard]] double progressPctAt(Date at) const;
  [[nodiscard]] double progressPct(Date now) const {
    return progressPctAt(currentDate.value_or(now));
  }
  [[nodiscard]] double remainingValue(Date now) const { return 1 - progressPct(now); }

  [[nodiscard]] TaskProgressDiscrete zeroProgress() const { return {.period = period}; }
  [[nodiscard]] TaskProgressDiscrete nextProgress() const { return completeProgress(); }
  [[nodiscard]] TaskProgressDiscrete completeProgress() const {
    return {.period = period, .numCompletions = 1};
  }
};

}  // namespace velloro
