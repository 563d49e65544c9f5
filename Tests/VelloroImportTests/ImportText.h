#pragma once

#include "Foundation/Values/Error.h"
#include "VelloroImport/ImportedBackup.h"

#include <initializer_list>
#include <string>

namespace velloro {

inline TimeZone berlin() {
  return TimeZone::fromIdentifier("Europe/Berlin").value();
}
inline Date importNow() {
  return Date::fromISO8601("2024-03-08T11:00:00Z").value();
}

/// The mode, the completions in a period, the interval and the times: "1 3 - 1".
inline std::string rhythm(const VelloroJSONBackupTask& task) {
  const auto number = [](const auto& of) { return of ? std::to_string(*of) : std::string("-"); };
  return std::to_string(rawValue(task.daysMode.value())) + " " + number(task.numCompletions) + " " +
         number(task.dayInterval) + " " + number(task.timesPerDay);
}

/// The entries by day: month and day, the type's raw value, and ten times the progress.
inline std::string logOf(const VelloroJSONBackupTask& task) {
  std::string log = task.status == TaskStatus::normal ? "" : std::string(rawValue(task.status));
  for (const auto& entry : task.log.value()) {
    log += " " + std::to_string(entry.entryDate.intValue() % 10000) + "=" +
           std::to_string(rawValue(entry.entryType)) + "/" +
           std::to_string(static_cast<int>(entry.progress.value() * 10));
  }
  return log;
}

inline std::string notesOf(const VelloroJSONBackupTask& task) {
  std::string notes;
  for (const auto& note : task.notes.value()) {
    notes += (note.date ? std::to_string(note.date->intValue() % 10000) : "-") + ":" +
             note.content.body + ";";
  }
  return notes;
}

/// The time and days of each reminder: "07:30/42".
inline std::string remindersOf(const VelloroJSONBackupTask& task) {
  std::string reminders;
  if (!task.notificationSettings) return reminders;
  for (const auto& reminder : *task.notificationSettings->reminders) {
    const std::int64_t minute = reminder.timeOfDay->rawValue() / 60;
    reminders += std::to_string(minute / 60) + ":" + std::to_string(minute % 60) + "/" +
                 std::to_string(reminder.days->rawValue) + " ";
  }
  return reminders;
}

inline std::string decisionsOf(const ImportedBackup& of) {
  std::string all;
  for (const auto& [what, why] : of.decisions) all += what + ": " + why + "\n";
  return all;
}

}  // namespace velloro
