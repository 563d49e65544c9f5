#pragma once

#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "VelloroCore/Reminders/AutomaticTimes.h"

#include <memory>
#include <optional>
#include <vector>

namespace velloro {

/// The automatic times of a stored task, and its settings with them. Reads the task's log of a few
/// days, unless the task is another's or its type alone decides, and writes nothing.
///
///     const auto automatic = AutomaticReminders::of(TaskSnapshot::of(*task, now));
///     automatic.times.size();                                          // 1
///     automatic.settings->timeOfDayReminders()[0].trigger.timeOfDay;   // HHMMSS{.h = 18}
struct AutomaticReminders {
  std::vector<AutomaticTime> times = {};
  /// Whether the reminders of these times are kept, but never sent.
  bool isMuted = false;
  /// Absent if the settings of the task stay as they are.
  std::optional<TaskNotificationSettings> settings = {};

  /// \param present The settings of the task.
  [[nodiscard]] static AutomaticReminders of(const TaskSnapshot& task,
                                             const TaskNotificationSettings& present);
  [[nodiscard]] static AutomaticReminders of(const TaskSnapshot& task);
};

/// Writes the automatic times of a task to its settings if that changes them, and returns whether
/// it did. Within a transaction, since they depend on the log; the caller saves.
bool updateAutomaticReminders(TaskEntity& task, Date now = Date::now());

/// Brings the automatic times of all active tasks up to date with their logs. They are first
/// derived without a transaction, so that other processes wait only if there is something to write;
/// then those of the tasks concerned are derived again, and written, in one transaction. Returns
/// whether anything was written. On the context's queue.
///
/// Times stay the same until the log changes or a day begins, so a second call writes nothing.
[[nodiscard]] Result<bool> rebuildAutomaticReminders(NSManagedObjectContext& context,
                                                     Date now = Date::now());

}  // namespace velloro
