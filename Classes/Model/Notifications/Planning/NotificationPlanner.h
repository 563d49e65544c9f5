#pragma once

#include "CoreData/Context/NSManagedObjectContext.h"
#include "Notifications/Planning/TaskPlan.h"
#include "Settings/SiriExtensionUtilities.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace velloro {

class TaskEntity;

/// Plans the notifications of stored tasks, as of one instant. It writes nothing; to be used on the
/// queue of the context.
///
///     const NotificationPlanner planner(*context, {.now = now},
///                                       [] { return Environment::current().random(); });
///     planner.tasks({task}).notifications.size();    // 0: the task has no identifier
class NotificationPlanner {
 public:
  using ScheduleRequest = NotificationHelper::ScheduleRequest;
  using Tasks = std::vector<std::shared_ptr<TaskEntity>>;

  /// \param random 64 random bits, by which words are chosen.
  NotificationPlanner(NSManagedObjectContext& context, const NotificationContentBuilder& builder,
                      std::function<std::uint64_t()> random);

  /// Settings that tasks are about to get, in place of their stored ones.
  std::map<const TaskEntity*, TaskNotificationSettings> newSettings;
  /// Where the reasons of each plan go; null when nobody asks.
  std::map<const TaskEntity*, TaskPlanReport>* reports = nullptr;

  /// Of tasks without an identifier there is nothing.
  [[nodiscard]] ScheduleRequest tasks(const Tasks& tasks) const;
  /// Cancels whatever an earlier plan may have pending for the three days of tasks: a list that has
  /// become shorter leaves the last identifiers of the former one. A rebuild needs none of it.
  [[nodiscard]] ScheduleRequest leftovers(const Tasks& tasks) const;
  /// Takes back all that `tasks` may have planned for a task.
  [[nodiscard]] ScheduleRequest cancels(const TaskEntity& task) const;
  /// The reminders that were asked for by voice, of tasks that are among the given ones.
  [[nodiscard]] ScheduleRequest siriReminders(
      const Tasks& tasks, const SiriExtensionUtilities::SiriReminders& reminders) const;
  /// Of the tasks in a normal state.
  [[nodiscard]] ScheduleRequest badges(const Tasks& tasks) const;

 private:
  using PartialEntries = std::map<const TaskEntity*, std::vector<Date>>;

  [[nodiscard]] TaskNotifications read(const TaskEntity& task) const;
  [[nodiscard]] ScheduleRequest plan(const TaskNotifications& task,
                                     std::vector<Date> partialEntries) const;
  [[nodiscard]] PartialEntries partialEntriesToday(
      const std::vector<TaskNotifications>& tasks) const;
  [[nodiscard]] std::optional<NotificationContent> siriReminder(
      const TaskEntity& task, const SiriExtensionUtilities::SiriReminder& reminder) const;

  NSManagedObjectContext& context_;
  NotificationContentBuilder builder_;
  std::function<std::uint64_t()> random_;
};

}  // namespace velloro
