#pragma once

#include "Foundation/Time/Date.h"
#include "VelloroTaskShare/TaskCloudSummary.h"

#include <span>
#include <vector>

namespace velloro {

/// How the entries of a log are put into a `TaskCloudSummary::History`.
struct HistoryRequest {
  HHMMSS startOfDay = {};
  DayOfWeek firstDayOfWeek = DayOfWeek::sunday;
  TimeZone taskTimeZone = TimeZone::gmt();  ///< An entry of this zone does not name it.
};

/// The history of a log. A period of one day that has ended is in `single`, where the last entry
/// of a day counts; all others are in `multi`, in the given order.
[[nodiscard]] TaskCloudSummary::History historyOf(std::span<const TaskCloudSummary::Entry> entries,
                                                  const HistoryRequest& request, Date now);

/// At most one time for each weekday: the earliest, counted from the start of the day. What has no
/// days, or no times, is left out, and so are indexes of days.
/// So of 09:00 on Monday and Tuesday and 07:00 on Monday, 07:00 on Monday comes first, and then
/// 09:00 on Tuesday.
[[nodiscard]] std::vector<TaskCloudSummary::ReminderTime> reduceToMinimalSet(
    std::vector<TaskCloudSummary::ReminderTime> times, HHMMSS startOfDay);

}  // namespace velloro
