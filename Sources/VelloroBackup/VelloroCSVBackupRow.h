#pragma once

#include "VelloroBackup/VelloroJSONBackup.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace velloro {

/// `TaskLogEntryType` by its texts in a CSV file, case for case.
enum class VelloroCSVBackupEntryType : std::uint8_t {
  unknown,
  completedManuallyFull,
  completedAutomaticallyFull,
  completedManuallyPartial,
  skippedManuallyFull,
  skippedAutomaticallyFull,
  allowableMissManuallyFull,
  allowableMissAutomaticallyFull,
  missedAutomaticallyFull,
  missedManuallyFull,
  missedManuallyPartial,
  missedAutomaticallyPartial,
  completedAutomaticallyPartial,
  timerManual,
  timerAutomatic,
  externalHealthData,
};

constexpr auto rawValues(std::type_identity<VelloroCSVBackupEntryType>) {
  using enum VelloroCSVBackupEntryType;
  return rawTexts<VelloroCSVBackupEntryType>(
      {{unknown, "unknown"},
       {completedManuallyFull, "completed_manually"},
       {completedAutomaticallyFull, "completed_auto"},
       {completedManuallyPartial, "completed_manually_partial"},
       {skippedManuallyFull, "skipped_manually"},
       {skippedAutomaticallyFull, "skipped_auto"},
       {allowableMissManuallyFull, "allowed_miss_manually"},
       {allowableMissAutomaticallyFull, "allowed_miss_auto"},
       {missedAutomaticallyFull, "missed_auto"},
       {missedManuallyFull, "missed_manually"},
       {missedManuallyPartial, "missed_manually_partial"},
       {missedAutomaticallyPartial, "missed_auto_partial"},
       {completedAutomaticallyPartial, "completed_auto_partial"},
       {timerManual, "timer_manually"},
       {timerAutomatic, "timer_auto"},
       {externalHealthData, "external_health_data"}});
}

[[nodiscard]] constexpr VelloroCSVBackupEntryType csvEntryType(TaskLogEntryType type) {
  return static_cast<VelloroCSVBackupEntryType>(type);
}
[[nodiscard]] constexpr TaskLogEntryType taskLogEntryType(VelloroCSVBackupEntryType type) {
  return static_cast<TaskLogEntryType>(type);
}

/// One entry of a log in a table of all of them. An empty field is absent.
struct VelloroCSVBackupRow {
  std::optional<std::string> taskId = {};
  std::optional<std::string> title = {};
  std::optional<VelloroJSONBackupVisualRepresentation> visualRepresentation = {};
  std::optional<VelloroCSVBackupEntryType> entryType = {};
  std::optional<YYYYMMDD> entryDate = {};
  std::optional<Date> entryTimestamp = {};
  std::optional<double> quantity = {};
  std::optional<TaskPageNumber> page = {};
  std::optional<std::string> notes = {};

  bool operator==(const VelloroCSVBackupRow&) const = default;

  /// Of a text with a header; columns of other names are passed over. \throws CSVError
  [[nodiscard]] static std::vector<VelloroCSVBackupRow> fromCSV(std::string_view bytes);
  /// A task without a log has one row. A note stands with the entries of its day.
  [[nodiscard]] static std::vector<VelloroCSVBackupRow> of(const VelloroJSONBackup& backup);
  /// The tasks in the order in which they come, those that are known by their title alone first.
  /// Rows without a title are left out.
  [[nodiscard]] static VelloroJSONBackup backup(const std::vector<VelloroCSVBackupRow>& rows,
                                                Date now);
};

/// What a row can hold of a backup.
///
///     const auto read = loadCSV("task_id,title\n,Read\n", now);
///     csvString(read).ends_with("notes\n,Read,,,,,,,\n");    // true
[[nodiscard]] std::string csvString(const VelloroJSONBackup& backup);
/// \throws CSVError
[[nodiscard]] VelloroJSONBackup loadCSV(std::string_view bytes, Date now);

}  // namespace velloro
