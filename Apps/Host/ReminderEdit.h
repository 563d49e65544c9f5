#pragma once

#include "OxKit/Platform.h"
#include "Tasks/Reminders/AutomaticReminders.h"
#include "VelloroCore/Reminders/TaskNotificationSettings.h"

#include <optional>
#include <vector>

namespace velloro {

/// The reminders of a task at an instant: those that are stored, but of an automatic task the times
/// that its log gives by then, which may be stored with the next plan only.
struct TaskReminders {
  /// Its reminders in the order in which they come within a logical day of the task, then those
  /// without a time of day.
  TaskNotificationSettings settings;
  std::vector<AutomaticTime> automaticTimes = {};

  [[nodiscard]] static TaskReminders of(const TaskEntity& task, Date now = Date::now());

  /// What a reminder was derived from; null for one that the user has made.
  [[nodiscard]] const AutomaticTime* automaticTime(const TaskReminder& reminder) const;
};

/// A reminder by time of day that a user adds.
struct NewReminder {
  HHMMSS time;
  EnumSet<DayOfWeek> days = everyDay();
  std::optional<SoundEffect> sound = {};
};

/// The reminders of a task while its user changes them. Within `HostStore::write`, from the reading
/// to the writing. What is not changed stays as it is stored.
///
///     ReminderEdit edit(*task, now);
///     edit.makeCustom().size();                     // 1: the automatic time is kept
///     edit.add({.time = {.h = 7, .m = 30}});
///     edit.write();                                 // true
class ReminderEdit {
 public:
  explicit ReminderEdit(TaskEntity& task, Date now = Date::now());

  /// With all changes so far.
  TaskNotificationSettings settings;

  /// Makes the automatic times of the task its own, which no log changes any more, and returns
  /// them: none where the task was not automatic. Muted times stay muted.
  std::vector<TaskReminder> makeCustom();
  /// Returns the reminder: one that comes at the same time on the same days, if there is one, which
  /// then has the given sound.
  TaskReminder add(const NewReminder& wanted);
  void remove(const UniqueID& reminder);

  /// Returns whether anything differs from what is stored.
  bool write();

 private:
  TaskEntity& task_;
  Date now_;
};

}  // namespace velloro
