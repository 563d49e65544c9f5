#pragma once

#include "VelloroCore/Frequency/TaskFrequency.h"

#include <cstdint>
#include <optional>
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
/// - "every 3 days", "3 times a week", "20 a month", "every day, in 3 steps": as listings say it
///
/// Months and years have no fixed number of days: for them there is `--times 1 --per month`.
/// Returns the steps of a completion, or the total, where the text says them. \throws UsageError
[[nodiscard]] std::optional<std::int64_t> setRecurrence(TaskFrequency& frequency,
                                                        const std::string& name,
                                                        const std::string& text);

/// On a number of days of each period, or with one total over it. Of a day, both are its steps.
void setPeriod(TaskFrequency& frequency, TaskFrequencyPeriodType period, bool isTotal);

}  // namespace velloro
