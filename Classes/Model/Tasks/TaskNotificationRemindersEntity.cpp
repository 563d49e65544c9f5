#include "Tasks/TaskNotificationRemindersEntity.h"

#include "Tasks/StoredValues.h"

namespace velloro {
namespace {

std::optional<TaskReminder::DayIndexes> dayIndexes(const std::string* stored) {
  if (stored == nullptr) return std::nullopt;
  TaskReminder::DayIndexes indexes;
  for (const std::string_view part : nonEmptyParts(*stored, ',')) {
    if (const auto index = storedInteger(part)) indexes.insert(*index);
  }
  return indexes;
}

}  // namespace

std::optional<TaskReminder> TaskNotificationRemindersEntity::reminder() const {
  const auto id = storedUniqueID(text(uniqueId));
  const auto days = value(daysOfWeek);
  auto what = trigger();
  if (!id || !days || !what) return std::nullopt;
  return TaskReminder{.uniqueId = *id,
                      .timeZone = enumValue<NotificationTimeZone>(timeZone),
                      .trigger = *std::move(what),
                      .daysOfWeek = DaysOfWeek(*days).daysOfWeek(),
                      .dayIndexesFromStart = dayIndexes(text(daysFromStart)),
                      .dayIndexesFromFinish = dayIndexes(text(daysFromFinish)),
                      .snoozeTime = storedTime(value(snoozeTime)),
                      .snoozeDate = storedDay(value(snoozeDate)),
                      .snoozeTimeZone = enumValue<NotificationTimeZone>(snoozeTimeZone),
                      .sound = enumValue<SoundEffect>(sound)};
}

std::optional<TaskReminder::Trigger> TaskNotificationRemindersEntity::trigger() const {
  using Trigger = TaskReminder::Trigger;
  using enum TaskReminder::TriggerType;
  const auto type = enumValue<TaskReminder::TriggerType>(reminderType)
                        .value_or(TaskReminder::TriggerType::timeOfDay);
  Trigger trigger{.type = type};
  switch (type) {
    case TaskReminder::TriggerType::timeOfDay:
    case timeOfDayMuted:
      trigger.timeOfDay = storedTime(value(TaskNotificationRemindersEntity::timeOfDay));
      return trigger.timeOfDay ? std::optional(trigger) : std::nullopt;
    case location:
      trigger.region = storedJSON<TriggerRegion>(value(region));
      return trigger.region ? std::optional(trigger) : std::nullopt;
    case durationAfterStart:
    case durationBeforeFinish:
      trigger.duration = value(duration);
      return trigger.duration ? std::optional(trigger) : std::nullopt;
  }
  return std::nullopt;
}

}  // namespace velloro
