#pragma once

#include "Foundation/Time/Date.h"
#include "Foundation/Time/TimeZone.h"
#include "OxDateTime/DayOfWeek.h"
#include "OxDateTime/HHMMSS.h"
#include "OxKit/Platform.h"

#include <optional>
#include <string>
#include <string_view>

namespace velloro {

/// A length of time above 0 in hours, minutes and seconds, in this order; absent for any other
/// text.
///
///     durationIn("90s");       // 90
///     durationIn("1h30m");     // 5400
///     durationIn("30m1h");     // absent
[[nodiscard]] std::optional<TimeInterval> durationIn(std::string_view text);

/// The clock of a task.
struct TaskClock {
  HHMMSS startOfDay;
  TimeZone timeZone;
  Date now;
};

/// When a reminder comes that a user adds.
struct ReminderTime {
  HHMMSS time;
  /// Of the moment that the user has named, whose logical day need not be the present one.
  std::optional<DayOfWeek> day = {};
};

/// A time of day, or a time from now on, as "+10m", that a time of day can express.
/// \throws UsageError
[[nodiscard]] ReminderTime reminderTimeArgument(const std::string& name, const std::string& text,
                                                const TaskClock& clock);

/// Weekdays as "mon,wed", or words as "weekdays", in any case. \throws UsageError
[[nodiscard]] EnumSet<DayOfWeek> daysArgument(const std::string& name, const std::string& text);

}  // namespace velloro
