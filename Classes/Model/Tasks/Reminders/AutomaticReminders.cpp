#include "Tasks/Reminders/AutomaticReminders.h"

#include "CoreData/Context/NSManagedObjectContext.h"
#include "Foundation/Values/Try.h"
#include "Tasks/Log/StoredLog.h"
#include "Tasks/Reminders/SleepSource.h"
#include "Tasks/Requests/TaskFetchRequest.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "Tasks/Rows/TaskWriting.h"

namespace velloro {

using Columns = TaskAttributes;

namespace {

std::vector<AutomaticTime> ownersTimes(const TaskEntity& task) {
  const auto share = task.value(Columns::taskShare);
  const auto kept = share ? share->value(TaskShareEntity::summaryJson) : std::nullopt;
  return kept ? kept->summary.ownersTimes() : std::vector<AutomaticTime>();
}

/// Read for the tasks alone that need it.
std::optional<HHMMSS> timeOfGoingToBed(const TaskSnapshot& task) {
  const auto& type = task.standing.automaticTaskType;
  const bool isOfSleep =
      type && (type->type == HealthType::sleep || type->type == HealthType::inBed);
  if (!isOfSleep) return std::nullopt;
  return readTimeOfGoingToBed(task.standing.today(), task.standing.startOfDay);
}

std::vector<AutomaticTime> timesOf(const TaskSnapshot& task) {
  if (task.shareStatus == TaskShareStatus::isSharedWithMe) return ownersTimes(*task.entity);
  std::optional<StoredLog> log;
  return automaticTimes(
      {.rules = task.standing.rules(),
       .automaticTaskType = task.standing.automaticTaskType,
       .displayOrder = task.entity->value(Columns::displayOrder),
       .timeOfGoingToBed = timeOfGoingToBed(task)},
      [&](const YYYYMMDD::Range& window) {
        log.emplace(*task.entity,
                    TaskLogFetchRequest{.direction = TaskLogFetchRequest::Direction::newestToOldest,
                                        .minDate = window.minDate,
                                        .maxDate = window.maxDate});
        return log->rows();
      });
}

}  // namespace

AutomaticReminders AutomaticReminders::of(const TaskSnapshot& task,
                                          const TaskNotificationSettings& present) {
  AutomaticReminders automatic{.times = timesOf(task),
                               .isMuted = present.reminderType != ReminderType::automatic};
  automatic.settings = withAutomaticTimes(present, automatic.times);
  return automatic;
}

AutomaticReminders AutomaticReminders::of(const TaskSnapshot& task) {
  return of(task, task.entity->notificationSettings());
}

bool updateAutomaticReminders(TaskEntity& task, Date now) {
  const auto automatic = AutomaticReminders::of(TaskSnapshot::of(task, now));
  return automatic.settings && setNotificationSettings(task, *automatic.settings);
}

Result<bool> rebuildAutomaticReminders(NSManagedObjectContext& context, Date now) {
  const auto settingsOf = [&](const std::shared_ptr<TaskEntity>& task) {
    return AutomaticReminders::of(TaskSnapshot::of(*task, now)).settings;
  };
  const TaskFetchRequest active{.includeStatuses = activeStatuses};
  auto tasks = TRY(context.fetch<TaskEntity>(active.fetchRequest()));
  std::erase_if(tasks, [&](const auto& task) { return !settingsOf(task); });
  if (tasks.empty()) return false;
  return context.performTransaction([&]() -> Result<bool> {
    // Everything is read before anything is written: a fetch then has no unsaved rows to look at.
    std::vector<std::optional<TaskNotificationSettings>> wanted;
    for (const auto& task : tasks) wanted.push_back(settingsOf(task));
    bool hasWritten = false;
    for (std::size_t i = 0; i < tasks.size(); ++i) {
      if (wanted[i] && setNotificationSettings(*tasks[i], *wanted[i])) hasWritten = true;
    }
    return hasWritten;
  });
}

}  // namespace velloro
