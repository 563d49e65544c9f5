#pragma once

#include "VelloroBackup/VelloroJSONBackup.h"
#include "VelloroExport/ExportRemark.h"

#include <string>
#include <vector>

namespace velloro {

/// The two files of harsh, a habit tracker for the terminal.
struct HarshFiles {
  std::string habits, log;
  std::vector<ExportRemark> remarks = {};
};

/// Writes a backup in the form that `readHarsh` (VelloroImport) reads.
///
/// A day has one mark: done where it was completed in full, else skipped, else not done; its amount
/// is the sum of the day, its comment the day's notes. An archived task ends before `timestamp`.
/// Names are distinct and hold no colon beside a blank, since it separates fields; such a colon
/// becomes a hyphen, a line break a blank. What can't be said is a remark.
///
///     harshFiles({.timestamp = now, .tasks = {{.title = "Read"}}}).habits;    // "Read: 1\n"
///
/// A task without a frequency is due every day.
[[nodiscard]] HarshFiles harshFiles(const VelloroJSONBackup& backup);

}  // namespace velloro
