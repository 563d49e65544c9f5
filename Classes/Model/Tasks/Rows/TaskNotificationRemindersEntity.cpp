#include "Tasks/Rows/TaskNotificationRemindersEntity.h"

namespace velloro {

using Trigger = TaskReminder::Trigger;
using Type = TaskReminder::TriggerType;

namespace {

/// The trigger with what its type needs and nothing besides; absent when that is not there.
std::optional<Trigger> withWhatItNeeds(Trigger trigger) {
  const bool isAtPlace = trigger.type == Type::location;
  const bool isOfTimer =
      trigger.type == Type::durationAfterStart || trigger.type == Type::durationBeforeFinish;
  if (!isAtPlace) trigger.region.reset();
  if (!isOfTimer) trigger.duration.reset();
  if (isAtPlace || isOfTimer) trigger.timeOfDay.reset();
  const bool isComplete = trigger.timeOfDay || trigger.region || trigger.duration;
  return isComplete ? std::optional(std::move(trigger)) : std::nullopt;
}

}  // namespace

std::optional<TaskReminder> TaskNotificationRemindersEntity::reminder() const {
  const auto id = value(uniqueId);
  const auto days = value(daysOfWeek);
  auto what = trigger();
  if (!id || !days || !what) return std::nullopt;
  return TaskReminder{.uniqueId = *id,
                      .timeZone = value(timeZone),
                      .trigger = *std::move(what),
                      .daysOfWeek = days->daysOfWeek(),
                      .dayIndexesFromStart = value(daysFromStart),
                      .dayIndexesFromFinish = value(daysFromFinish),
                      .snoozeTime = value(snoozeTime),
                      .snoozeDate = value(snoozeDate),
                      .snoozeTimeZone = value(snoozeTimeZone),
                      .sound = value(sound)};
}

std::optional<Trigger> TaskNotificationRemindersEntity::trigger() const {
  return withWhatItNeeds({.type = value(reminderType).value_or(Type::timeOfDay),
                          .timeOfDay = value(timeOfDay),
                          .region = value(region),
                          .duration = value(duration)});
}

std::optional<TaskReminder> TaskNotificationRemindersEntity::asStored(
    const TaskReminder& reminder) {
  auto trigger = withWhatItNeeds(reminder.trigger);
  if (!trigger) return std::nullopt;
  TaskReminder stored = reminder;
  stored.uniqueId = {};
  stored.trigger = *std::move(trigger);
  stored.timeSensitive.reset();
  return stored;
}

void TaskNotificationRemindersEntity::setReminder(const TaskReminder& reminder,
                                                  const UniqueID& id) {
  const Trigger& trigger = reminder.trigger;
  writeValue(uniqueId, id);
  writeValue(reminderType, trigger.type);
  writeValue(timeOfDay, trigger.timeOfDay);
  writeValue(daysOfWeek, velloro::daysOfWeek(reminder.daysOfWeek));
  writeValue(daysFromStart, reminder.dayIndexesFromStart);
  writeValue(daysFromFinish, reminder.dayIndexesFromFinish);
  writeValue(region, trigger.region);
  writeValue(duration, trigger.duration);
  writeValue(sound, reminder.sound);
  writeValue(timeZone, reminder.timeZone);
  writeValue(snoozeTimeZone, reminder.snoozeTimeZone);
  writeValue(snoozeDate, reminder.snoozeDate);
  writeValue(snoozeTime, reminder.snoozeTime);
}

bool TaskNotificationRemindersEntity::canRead(std::size_t slot) const {
  if (!NSManagedObject::canRead(slot)) return false;
  return slot != reminderType.slot() || !value(reminderType) || reminder();
}

}  // namespace velloro
