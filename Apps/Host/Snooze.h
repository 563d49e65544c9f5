#pragma once

#include "Foundation/Time/Date.h"
#include "Notifications/Planning/NotificationHelper.h"
#include "OxKit/FunctionRef.h"
#include "OxKit/Platform.h"
#include "OxKit/UniqueID.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

class HostStore;
class TaskEntity;

/// What became of a task's reminder that was put off.
struct Snooze {
  Date date;              ///< When it comes back.
  std::string timeOfDay;  ///< Of the reminder, "07:30:00".
};

/// Puts off the newest reminder of a task whose time has come on the present logical day or the one
/// before, else the next one. It comes back at that moment, whatever is planned again until then
/// and whatever setting or zone changes, unless the task is done by then.
///
/// Therefore the moment is kept as an entry of its own in the list of reminders that were asked
/// for. A reminder that was still to come does not come today.
///
/// \param find Gives the task, within the transaction.
/// \param duration In seconds; absent for the setting `nmSnoozeDuration`.
/// \throws HostError for a task that has no reminders or needs none.
Snooze snoozeReminder(const HostStore& store, FunctionRef<std::shared_ptr<TaskEntity>()> find,
                      std::optional<TimeInterval> duration, Date now);

/// Whether nothing of the task's present period is left to remind of.
[[nodiscard]] bool isSettled(const TaskEntity& task, Date now);
/// Those with a reminder that is put off.
[[nodiscard]] std::vector<UniqueID> snoozedTasks();
/// When the reminder of a task that is put off comes back; absent where none is.
[[nodiscard]] std::optional<Date> snoozedUntil(const UniqueID& task, Date now);
/// Forgets the moment that was kept for the task, if any. Returns what to take from the centre.
[[nodiscard]] NotificationHelper::ScheduleRequest endSnooze(const UniqueID& task);

}  // namespace velloro
