#pragma once

#include "VelloroImport/ImportedBackup.h"

#include <string_view>

namespace velloro {

/// Reads the two files of harsh, a habit tracker for the terminal.
///
/// `habits` has a line for each habit, below headings: `Read: 3/7`, `Run: 1w: 2025-01-01`. `log`
/// has a line for each mark: `2024-03-07 : Read : y : a comment : 2.5`; the last one of a day and
/// habit counts. A heading becomes a category, a comment the note of its day. A habit that stands
/// in the log alone is archived. A line that can't be read drops only itself, with a decision.
///
///     const auto read = readHarsh("Read: 1\n", "2024-03-07 : Read : y\n", zone, now);
///     read.backup.tasks.front().title;                 // "Read"
///     read.backup.tasks.front().log->size();           // 1
///
/// \param zone In which the days of the log are told.
[[nodiscard]] ImportedBackup readHarsh(std::string_view habits, std::string_view log,
                                       const TimeZone& zone, Date now);

}  // namespace velloro
