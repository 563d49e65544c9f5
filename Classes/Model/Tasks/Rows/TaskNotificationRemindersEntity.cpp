#include "Tasks/Rows/TaskNotificationRemindersEntity.h"

#include "Foundation/Coding/JSON.h"
#include "Tasks/Columns/StoredValues.h"

#include <algorithm>

namespace velloro {

using Trigger = TaskReminder::Trigger;
using Type = TaskReminder::TriggerType;

namespace {

std::optional<TaskReminder::DayIndexes> dayIndexes(const std::string* stored) {
  if (stored == nullptr) return std::nullopt;
  TaskReminder::DayIndexes indexes;
  for (const std::string_view part : nonEmptyParts(*stored, ',')) {
    if (const auto index = storedInteger(part)) indexes.insert(*index);
  }
  return indexes;
}

std::optional<std::string> indexesText(const std::optional<TaskReminder::DayIndexes>& indexes) {
  if (!indexes) return std::nullopt;
  std::string joined;
  for (const std::int64_t index : *indexes) {
    joined += (joined.empty() ? "" : ",") + std::to_string(index);
  }
  return joined;
}

/// A day or a time as its column has it.
template <typename T>
std::optional<std::int32_t> number(const std::optional<T>& value) {
  return value ? std::optional(static_cast<std::int32_t>(value->intValue())) : std::nullopt;
}

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

bool TaskNotificationRemindersEntity::canReadDayIndexes(const std::string& stored) {
  return std::ranges::all_of(nonEmptyParts(stored, ','),
                             [](std::string_view part) { return storedInteger(part).has_value(); });
}

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

std::optional<Trigger> TaskNotificationRemindersEntity::trigger() const {
  return withWhatItNeeds({.type = enumValue<Type>(reminderType).value_or(Type::timeOfDay),
                          .timeOfDay = storedTime(value(timeOfDay)),
                          .region = storedJSON<TriggerRegion>(value(region)),
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
  writeValue(uniqueId, id.stringValue());
  writeEnum<Type>(reminderType, trigger.type);
  writeValue(timeOfDay, number(trigger.timeOfDay));
  writeValue(daysOfWeek, velloro::daysOfWeek(reminder.daysOfWeek).rawValue);
  writeValue(daysFromStart, indexesText(reminder.dayIndexesFromStart));
  writeValue(daysFromFinish, indexesText(reminder.dayIndexesFromFinish));
  writeValue(region, trigger.region ? std::optional(Data(JSONEncoder{}.encode(*trigger.region)))
                                    : std::nullopt);
  writeValue(duration, trigger.duration);
  writeEnum(sound, reminder.sound);
  writeEnum(timeZone, reminder.timeZone);
  writeEnum(snoozeTimeZone, reminder.snoozeTimeZone);
  writeValue(snoozeDate, number(reminder.snoozeDate));
  writeValue(snoozeTime, number(reminder.snoozeTime));
}

}  // namespace velloro
