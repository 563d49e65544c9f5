#pragma once

#include "VelloroBackup/VelloroJSONBackup.h"
#include "VelloroExport/ExportRemark.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace velloro {

struct ICalendarOptions {
  bool withLog = false;  ///< Each day that was completed in full as a journal entry.
  /// In which the days of `timestamp` and of the tasks' creation are told.
  TimeZone timeZone = TimeZone::gmt();
  std::map<UniqueID, HHMMSS> startsOfDay = {};  ///< By task; midnight for others.
};

struct ICalendar {
  std::string text;
  std::vector<ExportRemark> remarks = {};
};

/// The reminders of a backup's active tasks as a calendar (RFC 5545).
///
/// A task that is due on weekdays is an event for each set of weekdays that has the same reminder
/// times, with an alarm for each of these; it begins at the first one, or takes all day where there
/// is none. A task of every N days is one event, which goes on from its last completion. Times are
/// floating: a reminder comes at its time of the clock wherever its user is. Tasks of another
/// frequency, and those that are not active, are left out with a remark.
///
///     ICalendar written = iCalendar(
///         {.timestamp = now, .tasks = {{.title = "Read", .daysOfWeek = DaysOfWeek::everyDay}}},
///         {});
///     written.text.contains("\r\nSUMMARY:Read\r\nRRULE:FREQ=DAILY\r\n");    // true
[[nodiscard]] ICalendar iCalendar(const VelloroJSONBackup& backup, const ICalendarOptions& options);

/// A line of a calendar, folded into lines of no more than 75 bytes and none of which ends within a
/// character; with its line break.
[[nodiscard]] std::string foldedLine(std::string_view line);

}  // namespace velloro
