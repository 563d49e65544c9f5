#pragma once

#include "Foundation/Values/Error.h"
#include "VelloroImport/ImportedBackup.h"

#include <filesystem>
#include <functional>
#include <map>
#include <string>

namespace velloro {

/// The files of an archive of tables, by their names.
using LoopFiles = std::map<std::string, std::string, std::less<>>;

/// Reads the tables of Loop Habit Tracker: `Habits.csv`, and for each habit `NNN Name/
/// Checkmarks.csv`, in the forms of versions 1.8 to 2.3. A habit without a folder has no log.
///
///     const LoopFiles files = {
///         {"Habits.csv", "Position,Name,Description,NumRepetitions,Interval,Color\n"
///                        "1,Read,,3,7,#008000\n"},
///         {"001 Read/Checkmarks.csv", "2024-03-07,2\n"}};
///     readLoopFiles(files, zone, now)->backup.tasks.front().log->size();    // 1
[[nodiscard]] Result<ImportedBackup> readLoopFiles(const LoopFiles& files, const TimeZone& zone,
                                                   Date now);
/// The same from the zip archive that the program writes.
[[nodiscard]] Result<ImportedBackup> readLoopArchive(const std::filesystem::path& file,
                                                     const TimeZone& zone, Date now);
/// Reads the database that the program's full backup is; every version up to 25.
[[nodiscard]] Result<ImportedBackup> readLoopDatabase(const std::filesystem::path& file,
                                                      const TimeZone& zone, Date now);

}  // namespace velloro
