#pragma once

#include "VelloroImport/ImportedBackup.h"

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace velloro {

/// Puts an import together. Identifiers come from the program's name and from keys, so that a
/// second import finds what the first one added: a task's key is unique among its tasks, and a
/// mark's or note's day and key within its task.
///
///     ImportBuilder builder("diary", zone, now);
///     VelloroJSONBackupTask& task = builder.addTask("7", "Read");
///     builder.addEntry(task, day, TaskLogEntryType::completedManuallyFull, 1);
///     const ImportedBackup imported = std::move(builder).finish();
///     imported.backup.tasks.front().log->size();    // 1
class ImportBuilder {
 public:
  ImportBuilder(std::string_view program, TimeZone zone, Date now)
      : program_(program), zone_(std::move(zone)), now_(now) {}

  [[nodiscard]] const TimeZone& zone() const { return zone_; }
  [[nodiscard]] YYYYMMDD today() const;
  /// An identifier of the program's.
  [[nodiscard]] UniqueID id(std::string_view kind, std::string_view key) const;

  void decide(std::string what, std::string why);
  /// About a task.
  void decide(const VelloroJSONBackupTask& task, std::string why);

  /// A task that is due every day. The reference lives as long as the builder.
  VelloroJSONBackupTask& addTask(std::string_view key, std::string_view title);
  /// See `setRollingFrequency`.
  void setFrequency(VelloroJSONBackupTask& task, std::int64_t count, std::int64_t days);
  /// A frequency that has the number of days as its only value: some days in a period.
  static void setDaysIn(VelloroJSONBackupTask& task, DayMode mode, std::int64_t days);
  static void setWeekdays(VelloroJSONBackupTask& task, DaysOfWeek days);
  /// How much is done in a day, or in the period of an aggregate mode. Parts of a whole, and more
  /// than the program can count, are lost; the report says so.
  void setTarget(VelloroJSONBackupTask& task, double target);

  void addEntry(VelloroJSONBackupTask& task, YYYYMMDD day, TaskLogEntryType type, double progress);
  /// The entry of a day's amount: whole, partial or none of what is called for. Of a habit to
  /// avoid, more than `target` is a miss.
  void addAmount(VelloroJSONBackupTask& task, YYYYMMDD day, double amount, double target);
  /// \param day Absent for a note of the task itself.
  void addNote(VelloroJSONBackupTask& task, std::optional<YYYYMMDD> day, std::string_view key,
               std::string_view text);
  /// Sent on the days that are due among `days`.
  void addReminder(VelloroJSONBackupTask& task, HHMMSS time, DaysOfWeek days);
  void addToCategory(VelloroJSONBackupTask& task, std::string_view title);
  void addCategory(std::string_view title);

  [[nodiscard]] ImportedBackup finish() &&;

 private:
  const std::string program_;
  const TimeZone zone_;
  const Date now_;
  std::deque<VelloroJSONBackupTask> tasks_;
  std::vector<VelloroJSONBackupCategory> categories_;
  std::vector<ImportDecision> decisions_;
};

/// The days of a week by their number, of which `isMember` says which: 1 is Monday, 7 Sunday.
template <typename Predicate>
[[nodiscard]] DaysOfWeek daysOfWeekWhere(Predicate isMember) {
  int days = 0;
  for (int day = 1; day <= 7; ++day) {
    if (isMember(day)) days |= 1 << (day % 7);
  }
  return DaysOfWeek(static_cast<std::int16_t>(days));
}

/// The text without blanks, tabs and carriage returns at its ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);
/// `2024-03-07`, as a day; absent for another form, and for a day that is none.
[[nodiscard]] std::optional<YYYYMMDD> isoDay(std::string_view text);
/// Absent for an instant beyond the years that a day can have.
[[nodiscard]] std::optional<YYYYMMDD> dayOf(Date date, const TimeZone& zone,
                                            HHMMSS startOfDay = {});
/// \param number Of days since 1970-01-01.
[[nodiscard]] std::optional<YYYYMMDD> dayOfNumber(std::int64_t number);
/// All of the text, which is a number from 0 to `most`.
template <typename Number>
[[nodiscard]] std::optional<Number> numberIn(std::string_view text, Number most);
extern template std::optional<double> numberIn(std::string_view, double);
extern template std::optional<std::int64_t> numberIn(std::string_view, std::int64_t);

}  // namespace velloro
