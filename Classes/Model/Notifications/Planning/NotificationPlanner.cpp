#include "Notifications/Planning/NotificationPlanner.h"

#include "Notifications/Planning/BadgePlan.h"
#include "OxLog/Log.h"
#include "Settings/Settings.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Status/StoredTaskStatus.h"

#include <algorithm>
#include <utility>

namespace velloro {
namespace {

TimeInterval snoozeDuration() {
  const TimeInterval chosen = Settings::shared().snoozeDuration();
  return chosen > 0 ? chosen : PlannedTask::defaultSnoozeDuration;
}

/// On the present logical day of the task, at the time that the clock showed where it was made.
Date madeAt(const TaskLogEntryEntity& entry, Date created, const TaskStanding& task) {
  const HHMMSS time = HHMMSS::fromDate(created, entry.timeZone(task.timeZone));
  return task.today().dateAt(task.startOfDay, time, task.timeZone);
}

EnumSet<TaskLogEntryType> partialTypes() {
  EnumSet<TaskLogEntryType> types;
  for (const TaskLogEntryType type : allCases<TaskLogEntryType>()) {
    if (isPartial(type)) types.insert(type);
  }
  return types;
}

}  // namespace

NotificationPlanner::NotificationPlanner(NSManagedObjectContext& context,
                                         const NotificationContentBuilder& builder,
                                         std::function<std::uint64_t()> random)
    : context_(context), builder_(builder), random_(std::move(random)) {}

TaskNotifications NotificationPlanner::read(const TaskEntity& task) const {
  auto notifications = TaskNotifications::of(task, builder_);
  if (const auto settings = newSettings.find(&task); settings != newSettings.end()) {
    notifications.settings = settings->second;
  }
  return notifications;
}

NotificationHelper::ScheduleRequest NotificationPlanner::tasks(const Tasks& tasks) const {
  ScheduleRequest request;
  std::vector<TaskNotifications> read;
  read.reserve(tasks.size());
  for (const auto& task : tasks) {
    if (task->taskUniqueId()) read.push_back(this->read(*task));
  }
  const auto entries = partialEntriesToday(read);
  for (const auto& task : read) {
    const auto made = entries.find(task.task.entity);
    request.merge(plan(task, made == entries.end() ? std::vector<Date>{} : made->second));
  }
  return request;
}

NotificationHelper::ScheduleRequest NotificationPlanner::plan(
    const TaskNotifications& task, std::vector<Date> partialEntries) const {
  const PlannedTask planned{.taskId = task.task.entity->uniqueId(),
                            .standing = task.task.standing,
                            .status = task.task.status,
                            .settings = task.settings,
                            .partialEntries = std::move(partialEntries),
                            .snoozeDuration = snoozeDuration(),
                            .deviceTimeZone = TimeZone::current()};
  std::optional<TaskNotifications::Day> day;
  TaskPlanReport* const report = reports != nullptr ? &(*reports)[task.task.entity] : nullptr;
  return plannedReminders(planned,
                          {.status =
                               [&](YYYYMMDD date) {
                                 day = task.day(date);
                                 return day->status.completionStatus.status;
                               },
                           .content =
                               [&](YYYYMMDD, const TaskNotifications::Reminder& reminder) {
                                 return task.reminder(*day, reminder, random_);
                               }},
                          report);
}

/// By one fetch for all tasks.
NotificationPlanner::PartialEntries NotificationPlanner::partialEntriesToday(
    const std::vector<TaskNotifications>& tasks) const {
  std::map<const TaskEntity*, const TaskStanding*> inSteps;
  std::optional<YYYYMMDD> first;
  for (const auto& [builder, task, settings, theme] : tasks) {
    if (task.standing.frequency.numPartialCompletions <= 1) continue;
    inSteps.emplace(task.entity, &task.standing);
    first = std::min(first.value_or(task.standing.today()), task.standing.today());
  }
  PartialEntries entries;
  if (!first) return entries;
  const TaskLogFetchRequest request{.minDate = first, .includeStatuses = partialTypes()};
  const TaskEntity* const only = inSteps.size() == 1 ? inSteps.begin()->first : nullptr;
  const auto made = context_.fetch<TaskLogEntryEntity>(request.fetchRequest(only));
  if (!made) {
    Log::notifications.error(made.error());
    return entries;
  }
  for (const auto& entry : *made) {
    const auto task = inSteps.find(entry->value(TaskLogEntryEntity::task).get());
    const auto created = entry->value(TaskLogEntryEntity::createdTimestamp);
    if (task == inSteps.end() || !created ||
        entry->value(TaskLogEntryEntity::entryDate) != task->second->today()) {
      continue;
    }
    entries[task->first].push_back(madeAt(*entry, *created, *task->second));
  }
  return entries;
}

NotificationHelper::ScheduleRequest NotificationPlanner::leftovers(const Tasks& tasks) const {
  ScheduleRequest request;
  const std::size_t most = NotificationID::numRemindersToCancel(task_plan::mostReminders);
  for (const auto& task : tasks) {
    const TaskStanding standing = TaskSnapshot::of(*task, builder_.now).standing;
    for (std::int64_t i = 0; i < task_plan::daysPlanned; ++i) {
      const YYYYMMDD day = standing.today().add(i, standing.timeZone);
      for (std::size_t index = 0; index < most; ++index) {
        request.cancelPending.insert(NotificationID::reminder(day, task->uniqueId(), index).str);
      }
    }
  }
  return request;
}

NotificationHelper::ScheduleRequest NotificationPlanner::cancels(const TaskEntity& task) const {
  PlannedTask planned{.taskId = task.uniqueId(),
                      .standing = TaskSnapshot::of(task, builder_.now).standing,
                      .settings = task.notificationSettings()};
  planned.settings.reminderType = ReminderType::none;
  return plannedReminders(
      planned,
      {.status = [](YYYYMMDD) { return CompletionStatus::Status::positiveComplete; },
       .content = [](YYYYMMDD, const auto&) { return std::optional<NotificationContent>(); }},
      nullptr);
}

NotificationHelper::ScheduleRequest NotificationPlanner::siriReminders(
    const Tasks& tasks, const SiriExtensionUtilities::SiriReminders& reminders) const {
  ScheduleRequest request;
  for (const auto& reminder : reminders) {
    const auto task = std::ranges::find_if(
        tasks, [&](const auto& each) { return each->taskUniqueId() == reminder.taskId; });
    if (task == tasks.end()) continue;
    if (auto content = siriReminder(**task, reminder)) {
      request.notifications.push_back(*std::move(content));
    }
  }
  return request;
}

std::optional<NotificationContent> NotificationPlanner::siriReminder(
    const TaskEntity& task, const SiriExtensionUtilities::SiriReminder& reminder) const {
  const auto notifications = read(task);
  const TaskStanding& standing = notifications.task.standing;
  const auto date = YYYYMMDD::fromDate(standing.startOfDay, reminder.date, standing.timeZone);
  return notifications.reminder(
      notifications.day(date),
      {.id = NotificationID::spoken(reminder.uniqueId, reminder.taskId),
       .trigger = NotificationTrigger{reminder.date},
       .timeSensitive = notifications.settings.automaticRemindersAreTimeSensitive.value_or(false)},
      random_);
}

NotificationHelper::ScheduleRequest NotificationPlanner::badges(const Tasks& tasks) const {
  BadgePlan plan(builder_.now);
  for (const auto& task : tasks) {
    const auto snapshot = TaskSnapshot::of(*task, builder_.now);
    if (snapshot.status != TaskStatus::normal) continue;
    plan.add(snapshot.standing, task->notificationSettings(),
             [&](const TaskFrequencyPeriod& period) {
               return streakedCompletionStatus(snapshot, period).completionStatus.status;
             });
  }
  return plan.request(builder_);
}

}  // namespace velloro
