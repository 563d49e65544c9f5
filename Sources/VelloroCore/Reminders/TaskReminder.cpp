#include "VelloroCore/Reminders/TaskReminder.h"

#include "Foundation/Coding/Coding.h"

#include <utility>

namespace velloro {
namespace {

void shift(std::optional<TaskReminder::DayIndexes>& indexes, std::int64_t days) {
  if (!indexes) return;
  TaskReminder::DayIndexes shifted;
  for (const std::int64_t index : *indexes) {
    std::int64_t moved = 0;
    // What would leave 64 bits is no day of any period.
    if (!__builtin_add_overflow(index, days, &moved)) shifted.insert(moved);
  }
  indexes = std::move(shifted);
}

void shiftDays(TaskReminder& reminder, std::int64_t days) {
  EnumSet<DayOfWeek> moved;
  for (const DayOfWeek day : reminder.daysOfWeek) moved.insert(add(day, days));
  reminder.daysOfWeek = moved;
  shift(reminder.dayIndexesFromStart, days);
  shift(reminder.dayIndexesFromFinish, -days);
}

}  // namespace

TaskReminder::Trigger TaskReminder::Trigger::decode(const Decoder& from) {
  auto trigger = decodeKeyed<Trigger>(from);
  const bool isKnown = from.succeeds([&] { (void)from.decode<TriggerType>("type"); });
  if (isKnown || trigger.timeOfDay) return trigger;
  throw from.dataCorrupted("The type is not known, and there is no time of day.");
}

TaskReminder TaskReminder::with(EnumSet<DayOfWeek> days, Trigger newTrigger) const {
  TaskReminder copy = *this;
  copy.daysOfWeek = days;
  copy.trigger = std::move(newTrigger);
  copy.dayIndexesFromStart.reset();
  copy.dayIndexesFromFinish.reset();
  return copy;
}

TaskReminder TaskReminder::withSnooze(std::optional<YYYYMMDD> date, std::optional<HHMMSS> time,
                                      std::optional<NotificationTimeZone> zone) const {
  TaskReminder copy = *this;
  copy.snoozeDate = date;
  copy.snoozeTime = time;
  copy.snoozeTimeZone = zone;
  return copy;
}

TaskReminder TaskReminder::convert(NotificationTimeZone to, TimeZone ownerTimeZone,
                                   TimeZone viewerTimeZone, Date now) const {
  const bool isTimed =
      trigger.type == TriggerType::timeOfDay || trigger.type == TriggerType::timeOfDayMuted;
  if (timeZone == to || !isTimed || !trigger.timeOfDay) return *this;

  const bool isForViewer = to == NotificationTimeZone::taskViewer;
  const TimeZone source = isForViewer ? ownerTimeZone : viewerTimeZone;
  const TimeZone target = isForViewer ? viewerTimeZone : ownerTimeZone;
  const YYYYMMDD today = YYYYMMDD::today(HHMMSS::midnight, source, now);
  const Date moment = today.dateAt(HHMMSS::midnight, *trigger.timeOfDay, source);
  const YYYYMMDD newDay = YYYYMMDD::fromDate(HHMMSS::midnight, moment, target);

  TaskReminder copy = *this;
  copy.trigger = {.type = trigger.type, .timeOfDay = HHMMSS::fromDate(moment, target)};
  if (newDay > today) shiftDays(copy, 1);
  if (newDay < today) shiftDays(copy, -1);
  copy.timeZone = to;
  copy.timeSensitive.reset();
  return copy;
}

}  // namespace velloro
