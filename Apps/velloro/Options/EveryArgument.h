#pragma once

#include "VelloroCore/Frequency/TaskFrequency.h"

#include <string>
#include <string_view>

namespace velloro {

/// The days of a word in lower case: "weekday", "weekends", "daily". None for any other.
[[nodiscard]] EnumSet<DayOfWeek> daysNamed(std::string_view word);

/// Makes a frequency recur as a person writes it:
///
/// - "mon,wed,fri", "monday", "day", "daily", "weekday", "weekend": on these days of the week
/// - "3d", "3 days", "other day": from one completion to the next
/// - "2 weeks", "2w", "fortnight": the same in days, 14
///
/// Months and years have no fixed number of days: for them there is `--times 1 --per month`.
/// \throws UsageError
void setRecurrence(TaskFrequency& frequency, const std::string& name, const std::string& text);

}  // namespace velloro
