#pragma once

#include "Agent/OpenReminder.h"
#include "Host/HostStore.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"

#include <memory>
#include <optional>
#include <string>

namespace velloro {

/// What a user answers to a reminder, to be written into the log.
enum class ReminderAnswer : std::uint8_t { done, missed, skip };

struct AnsweredReminder {
  /// Null where nothing was written: it had been answered before, or needs no answer any more.
  std::shared_ptr<TaskLogEntryEntity> entry = {};
  std::string title;  ///< Of the task.
};

/// Writes the entry that an answer stands for: as `velloro log add` would on the reminder's own
/// day, however late the answer comes. A second answer to the same occurrence writes nothing,
/// whoever gives it, and neither does one to a reminder that its task no longer needs.
/// \param amount What was done, in the task's unit; absent for the next step.
/// \throws HostError if the task is gone, or nothing can be written.
AnsweredReminder answerReminder(const HostStore& store, const OpenReminder& reminder,
                                ReminderAnswer answer, std::optional<double> amount, Date now);

/// The identifier of the entry that an answer to this occurrence writes.
[[nodiscard]] UniqueID answerEntryID(const OpenReminder& reminder);

/// Whether the task still needs a reminder of that day.
[[nodiscard]] bool needsReminder(const TaskEntity& task, YYYYMMDD day, Date now);

/// Null where it is gone.
[[nodiscard]] std::shared_ptr<TaskEntity> taskOf(const HostStore& store,
                                                 const OpenReminder& reminder);

/// An amount as a user types it into a reminder: a number above 0, with a point or a comma, and
/// nothing else. Absent for any other text.
///
///     amountIn(" 2,5 ");    // 2.5
///     amountIn("two");      // absent
[[nodiscard]] std::optional<double> amountIn(std::string_view text);

}  // namespace velloro
