#include "CoreData/Context/NSManagedObjectContext.h"
#include "Tasks/Rows/TaskNotificationRemindersEntity.h"
#include "Tasks/Rows/TaskNotificationSettingsEntity.h"
#include "Tasks/Rows/TaskWriting.h"

#include <unordered_set>

namespace velloro {

using RemindersRow = TaskNotificationRemindersEntity;
using SettingsRow = TaskNotificationSettingsEntity;

TaskNotificationSettings TaskEntity::notificationSettings() const {
  const auto row = value(TaskAttributes::taskNotificationSettings);
  if (row == nullptr) {
    return TaskNotificationSettings::default_(DefaultSettingsTaskType::untimed(),
                                              NotificationTimeZone::taskViewer);
  }
  TaskNotificationSettings settings = row->settings();
  for (const auto& reminderRow : value(TaskAttributes::taskNotificationReminders)) {
    if (auto reminder = reminderRow->reminder()) {
      settings.reminders.push_back(*std::move(reminder));
    }
  }
  return settings;
}

namespace {

/// By value, not by identifier: a reminder that was made anew as it was leaves its row alone.
bool setReminders(TaskEntity& task, NSManagedObjectContext& context,
                  const std::vector<TaskReminder>& reminders) {
  std::unordered_set<TaskReminder> wanted;
  for (const TaskReminder& reminder : reminders) {
    if (auto stored = RemindersRow::asStored(reminder)) wanted.insert(*std::move(stored));
  }
  bool changed = false;
  for (const auto& row : task.value(TaskAttributes::taskNotificationReminders)) {
    const auto reminder = row->reminder();
    const auto known = reminder ? RemindersRow::asStored(*reminder) : std::nullopt;
    if (known && wanted.erase(*known) > 0) continue;
    context.deleteObject(*row);
    changed = true;
  }
  for (const TaskReminder& reminder : reminders) {
    const auto stored = RemindersRow::asStored(reminder);
    if (!stored || wanted.erase(*stored) == 0) continue;
    const auto row = RemindersRow::create(context);
    row->setReminder(*stored, reminder.uniqueId);
    task.add(TaskAttributes::taskNotificationReminders, row);
    changed = true;
  }
  return changed;
}

}  // namespace

bool setNotificationSettings(TaskEntity& task, const TaskNotificationSettings& settings) {
  NSManagedObjectContext* context = task.managedObjectContext();
  if (context == nullptr) return false;
  const bool remindersChanged = setReminders(task, *context, settings.reminders);
  auto row = task.value(TaskAttributes::taskNotificationSettings);
  if (row == nullptr) {
    row = SettingsRow::create(*context);
    task.setValue(TaskAttributes::taskNotificationSettings, row);
  }
  return row->setSettings(settings) || remindersChanged;
}

}  // namespace velloro
