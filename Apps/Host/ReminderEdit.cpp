#include "Host/ReminderEdit.h"

#include "Tasks/Rows/TaskWriting.h"
#include "VelloroCore/Reminders/ReminderOrder.h"

#include <algorithm>
#include <utility>

namespace velloro {
namespace {

using Type = TaskReminder::TriggerType;

bool isByTimeOfDay(const TaskReminder& reminder) {
  return reminder.trigger.type == Type::timeOfDay;
}

}  // namespace

TaskReminders TaskReminders::of(const TaskEntity& task, Date now) {
  const auto snapshot = TaskSnapshot::of(task, now);
  TaskReminders reminders{.settings = task.notificationSettings()};
  auto automatic = AutomaticReminders::of(snapshot, reminders.settings);
  reminders.automaticTimes = std::move(automatic.times);
  const bool isAutomatic = reminders.settings.reminderType == ReminderType::automatic;
  if (isAutomatic && automatic.settings) reminders.settings = *std::move(automatic.settings);
  auto& all = reminders.settings.reminders;
  all = sortedByTimeOfDay(std::move(all), snapshot.standing.startOfDay);
  return reminders;
}

const AutomaticTime* TaskReminders::automaticTime(const TaskReminder& reminder) const {
  const bool isAutomatic =
      reminder.trigger.type == Type::timeOfDayMuted ||
      (isByTimeOfDay(reminder) && settings.reminderType == ReminderType::automatic);
  if (!isAutomatic) return nullptr;
  const auto found = std::ranges::find_if(automaticTimes, [&](const AutomaticTime& time) {
    return time.time == reminder.trigger.timeOfDay && time.days == reminder.daysOfWeek &&
           time.dayIndexesFromStart == reminder.dayIndexesFromStart &&
           time.dayIndexesFromFinish == reminder.dayIndexesFromFinish;
  });
  return found != automaticTimes.end() ? &*found : nullptr;
}

ReminderEdit::ReminderEdit(TaskEntity& task, Date now)
    : settings(task.notificationSettings()), task_(task), now_(now) {}

std::vector<TaskReminder> ReminderEdit::makeCustom() {
  const bool wasAutomatic = settings.reminderType == ReminderType::automatic;
  if (wasAutomatic) settings = TaskReminders::of(task_, now_).settings;
  settings.reminderType = ReminderType::custom;
  return wasAutomatic ? settings.timeOfDayReminders() : std::vector<TaskReminder>();
}

TaskReminder ReminderEdit::add(const NewReminder& wanted) {
  TaskReminder added{.uniqueId = UniqueID::create(),
                     .timeZone = NotificationTimeZone::taskViewer,
                     .trigger = TaskReminder::Trigger::fromTimeOfDay(wanted.time),
                     .daysOfWeek = wanted.days,
                     .sound = wanted.sound};
  const auto known = std::ranges::find_if(
      settings.reminders, [&](const TaskReminder& each) { return isSameTrigger(each, added); });
  if (known == settings.reminders.end()) return settings.reminders.emplace_back(std::move(added));
  if (wanted.sound) known->sound = wanted.sound;
  return *known;
}

void ReminderEdit::remove(const UniqueID& reminder) {
  std::erase_if(settings.reminders,
                [&](const TaskReminder& each) { return each.uniqueId == reminder; });
}

bool ReminderEdit::write() {
  return setNotificationSettings(task_, settings);
}

}  // namespace velloro
