#pragma once

#include "Foundation/Values/Error.h"
#include "VelloroImport/ImportedBackup.h"

#include <string_view>

// Readers of programs that write JSON. A document that can't be read, or is of another shape,
// fails; a damaged part of it drops only itself, with a decision. `zone` is where days are told.

namespace velloro {

/// Reads Habitica's `userdata.json`. Dailies and habits are carried; a habit with both signs
/// becomes two tasks. To-dos, rewards, tags, values and streaks are not, and the report says so.
///
///     const auto read = readHabitica(
///         R"({"tasks":{"habits":[{"_id":"1","text":"Read","up":true,"down":false}]}})", zone,
///         now);
///     read->backup.tasks.front().title;    // "Read"
[[nodiscard]] Result<ImportedBackup> readHabitica(std::string_view json, const TimeZone& zone,
                                                  Date now);

/// Reads what mhabit exports.
///
///     readMhabit(R"({"habits":[{"name":"Read","start_date":19789}]})", zone, now)
///         ->backup.tasks.front().title;    // "Read"
[[nodiscard]] Result<ImportedBackup> readMhabit(std::string_view json, const TimeZone& zone,
                                                Date now);

/// Reads what `task export` of Taskwarrior writes: an array, one object, or an object a line.
/// Recurring tasks are carried, their done children as completions, deleted ones as skips.
///
///     readTaskwarrior(R"({"uuid":"a","description":"Read","status":"recurring","recur":"daily"})",
///                     zone, now)->backup.tasks.front().title;    // "Read"
[[nodiscard]] Result<ImportedBackup> readTaskwarrior(std::string_view json, const TimeZone& zone,
                                                     Date now);

}  // namespace velloro
