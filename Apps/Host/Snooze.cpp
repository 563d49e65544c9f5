#include "Host/Snooze.h"

#include "Foundation/Text/String.h"
#include "Host/HostStore.h"
#include "Host/NotificationUpdates.h"
#include "Host/PeriodCloser.h"
#include "Notifications/Planning/TaskPlan.h"
#include "OxLog/Log.h"
#include "Settings/Settings.h"
#include "Settings/SiriExtensionUtilities.h"
#include "Tasks/Reminders/AutomaticReminders.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskWriting.h"
#include "Tasks/Status/StoredTaskStatus.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

namespace velloro {
namespace {

/// A reminder of a task, with a moment at which it comes.
struct Moment {
  TaskReminder reminder;
  Date date;
};

/// The one entry in the list of asked-for reminders that is a snooze of the task: it has an
/// identifier of its own, so that it is found again and replaced.
UniqueID snoozeId(const UniqueID& task) {
  UUID::Bytes bytes = task.uuid.bytes();
  for (std::size_t i = 12; i < bytes.size(); ++i) bytes[i] ^= 0xFF;
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x80);  // version 8: a form of our own
  return {UUID(bytes)};
}

/// From the day before the present one, if that is still to be reminded of, to the day after the
/// next, in order of time.
std::vector<Moment> moments(const TaskSnapshot& snapshot,
                            const TaskNotificationSettings& settings) {
  constexpr std::int64_t first = -1;
  constexpr std::int64_t last = 2;
  const TaskStanding& task = snapshot.standing;
  const YYYYMMDD since = std::max(createdDay(snapshot), task.currentPeriod().period.startDate);
  std::vector<Moment> moments;
  for (std::int64_t i = first; i <= last; ++i) {
    const YYYYMMDD day = task.today().add(i, task.timeZone);
    if (day < since) continue;
    for (const TaskReminder& reminder : settings.timeOfDayReminders()) {
      const auto& time = reminder.trigger.timeOfDay;
      if (!time || !reminder.daysOfWeek.contains(day.dayOfWeek(task.timeZone))) continue;
      moments.push_back({reminder, day.dateAt(task.startOfDay, *time, task.timeZone)});
    }
  }
  std::ranges::stable_sort(moments, {}, &Moment::date);
  return moments;
}

/// The newest whose time has come, else the next.
std::optional<Moment> reminderToSnooze(const TaskSnapshot& task,
                                       const TaskNotificationSettings& settings) {
  const auto all = moments(task, settings);
  const auto next = std::ranges::upper_bound(all, task.standing.now, {}, &Moment::date);
  if (next != all.begin()) return *std::prev(next);
  return next == all.end() ? std::nullopt : std::optional(*next);
}

TimeInterval usualDuration() {
  const TimeInterval chosen = Settings::shared().snoozeDuration();
  return chosen > 0 ? chosen : PlannedTask::defaultSnoozeDuration;
}

/// Throws where there is nothing to put off.
Moment momentToSnooze(const TaskEntity& task, const TaskSnapshot& snapshot) {
  const auto none = [&](const std::string& why) {
    return HostError(inQuotes(task.title()) + ": " + why);
  };
  const auto settings = task.notificationSettings();
  if (settings.reminderType == ReminderType::none) throw none("it has no reminders");
  if (isSettled(task, snapshot.standing.now)) throw none("it needs no reminder now");
  const auto moment = reminderToSnooze(snapshot, settings);
  if (!moment) throw none("it has no reminders");
  return *moment;
}

/// The settings in which the reminder does not come beside its snooze: one that is still to come
/// today counts as put off when the day began, which is past.
TaskNotificationSettings withoutMoment(TaskNotificationSettings settings, const Moment& moment,
                                       const TaskStanding& task) {
  const YYYYMMDD today = task.today();
  const bool isDropped =
      moment.date > task.now &&
      today.startOfDay(task.startOfDay, task.timeZone) + usualDuration() < task.now;
  for (TaskReminder& reminder : settings.reminders) {
    if (reminder.uniqueId != moment.reminder.uniqueId) continue;
    reminder = isDropped
                   ? reminder.withSnooze(today, task.startOfDay, NotificationTimeZone::taskOwner)
                   : reminder.withSnooze({}, {}, {});
  }
  return settings;
}

Result<void> keepAsAsked(const UniqueID& task, Date at) {
  return SiriExtensionUtilities::shared()->editSiriReminders([&](auto& reminders) {
    std::erase_if(reminders, [&](const auto& each) { return each.uniqueId == snoozeId(task); });
    reminders.push_back({snoozeId(task), task, at});
  });
}

}  // namespace

Snooze snoozeReminder(const HostStore& store, FunctionRef<std::shared_ptr<TaskEntity>()> find,
                      std::optional<TimeInterval> duration, Date now) {
  const Date start = Date::since1970(std::floor(now.timeIntervalSince1970()));
  const Date at = start + duration.value_or(usualDuration());
  UniqueID id;
  const Snooze snooze = store.write([&] {
    const auto task = find();
    id = task->uniqueId();
    PeriodCloser(store.context(), now).close(*task);
    // The times of an automatic task may not have been learned yet.
    updateAutomaticReminders(*task, now);
    const auto snapshot = TaskSnapshot::of(*task, now);
    const Moment moment = momentToSnooze(*task, snapshot);
    setNotificationSettings(*task,
                            withoutMoment(task->notificationSettings(), moment, snapshot.standing));
    NotificationUpdates::shared().note(task);
    return Snooze{at, moment.reminder.trigger.timeOfDay->debugDescription()};
  });
  if (const auto kept = keepAsAsked(id, at); !kept) {
    throw HostError("nothing was put off: " + kept.error()->localizedDescription());
  }
  return snooze;
}

bool isSettled(const TaskEntity& task, Date now) {
  const auto snapshot = TaskSnapshot::of(task, now);
  const auto status = streakedCompletionStatus(snapshot, snapshot.standing.currentPeriod().period)
                          .completionStatus.status;
  return whyNoReminders(snapshot.status, snapshot.standing.automaticTaskType, status).has_value();
}

std::vector<UniqueID> snoozedTasks() {
  std::vector<UniqueID> tasks;
  for (const auto& each : SiriExtensionUtilities::shared()->siriReminders()) {
    if (each.uniqueId == snoozeId(each.taskId)) tasks.push_back(each.taskId);
  }
  return tasks;
}

std::optional<Date> snoozedUntil(const UniqueID& task, Date now) {
  for (const auto& each : SiriExtensionUtilities::shared()->siriReminders()) {
    if (each.uniqueId == snoozeId(task) && each.date > now) return each.date;
  }
  return std::nullopt;
}

NotificationHelper::ScheduleRequest endSnooze(const UniqueID& task) {
  const auto& utilities = *SiriExtensionUtilities::shared();
  const auto reminders = utilities.siriReminders();
  const auto isSnooze = [&](const auto& each) { return each.uniqueId == snoozeId(task); };
  if (std::ranges::none_of(reminders, isSnooze)) return {};
  const auto edited =
      utilities.editSiriReminders([&](auto& list) { std::erase_if(list, isSnooze); });
  if (!edited) Log::notifications.error(edited.error());
  const std::string id = NotificationID::spoken(snoozeId(task), task).str;
  return {.cancelPending = {id}, .cancelDelivered = {id}};
}

}  // namespace velloro
