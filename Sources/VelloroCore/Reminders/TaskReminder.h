#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Coding/RawValue.h"
#include "Foundation/Time/Date.h"
#include "Foundation/Values/Hasher.h"
#include "OxDateTime/DayOfWeek.h"
#include "OxDateTime/HHMMSS.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/EnumSet.h"
#include "OxKit/UniqueID.h"
#include "VelloroCore/Reminders/NotificationModes.h"
#include "VelloroCore/Reminders/SoundEffect.h"
#include "VelloroCore/Reminders/TriggerRegion.h"

#include <cstdint>
#include <optional>
#include <set>
#include <type_traits>
#include <utility>

namespace velloro {

/// One reminder of a task: what sets it off, and on which days.
///
///     const TaskReminder reminder{
///         .uniqueId = UniqueID::create(),
///         .timeZone = NotificationTimeZone::taskOwner,
///         .trigger = TaskReminder::Trigger::fromTimeOfDay({.h = 23, .m = 30}),
///         .daysOfWeek = {DayOfWeek::monday}};
///     // In Berlin, an hour further east, it is half past midnight on Tuesday:
///     reminder.convert(NotificationTimeZone::taskViewer, TimeZone::gmt(), berlin, now)
///         .daysOfWeek.contains(DayOfWeek::tuesday);    // true
struct TaskReminder {
  enum class TriggerType : std::int8_t {
    timeOfDay,
    timeOfDayMuted,  ///< Says when the task matters, but is never sent.
    location,
    durationAfterStart,    ///< Of a timer.
    durationBeforeFinish,  ///< Of a timer.
  };

  /// What triggers a reminder. The type decides which of the optional members is present.
  struct Trigger {
    TriggerType type = TriggerType::timeOfDay;
    std::optional<HHMMSS> timeOfDay = {};
    std::optional<TriggerRegion> region = {};
    std::optional<TimeInterval> duration = {};

    [[nodiscard]] static Trigger fromTimeOfDay(HHMMSS timeOfDay) {
      return {.type = TriggerType::timeOfDay, .timeOfDay = timeOfDay};
    }
    [[nodiscard]] static Trigger fromMutedTimeOfDay(HHMMSS timeOfDay) {
      return {.type = TriggerType::timeOfDayMuted, .timeOfDay = timeOfDay};
    }
    [[nodiscard]] static Trigger fromRegion(TriggerRegion region) {
      return {.type = TriggerType::location, .region = std::move(region)};
    }
    [[nodiscard]] static Trigger fromDuration(TriggerType type, TimeInterval duration) {
      return {.type = type, .duration = duration};
    }

    bool operator==(const Trigger&) const = default;
    static constexpr auto codingKeys =
        keys(key("type", &Trigger::type, initialWhenUnknown), key("timeOfDay", &Trigger::timeOfDay),
             key("region", &Trigger::region), key("duration", &Trigger::duration));
    /// A type that is not known is a time of day; where there is none, it fails.
    [[nodiscard]] static Trigger decode(const Decoder& from);
  };

  using DayIndexes = std::set<std::int64_t>;

  UniqueID uniqueId;
  std::optional<NotificationTimeZone> timeZone = {};  ///< Whose clock the trigger's time is of.
  Trigger trigger = {};
  EnumSet<DayOfWeek> daysOfWeek = {};
  /// Days of a period of several days, counted from its first and from its last one.
  std::optional<DayIndexes> dayIndexesFromStart = {}, dayIndexesFromFinish = {};
  // When the reminder was last put off, and on whose clock.
  std::optional<HHMMSS> snoozeTime = {};
  std::optional<YYYYMMDD> snoozeDate = {};
  std::optional<NotificationTimeZone> snoozeTimeZone = {};
  std::optional<SoundEffect> sound = {};   ///< Absent: none of its own.
  std::optional<bool> timeSensitive = {};  ///< Absent: as the task's settings say.

  bool operator==(const TaskReminder&) const = default;
  static constexpr auto codingKeys = keys(
      key("uniqueId", &TaskReminder::uniqueId), key("timeZone", &TaskReminder::timeZone),
      key("trigger", &TaskReminder::trigger), key("daysOfWeek", &TaskReminder::daysOfWeek),
      key("dayIndexesFromStart", &TaskReminder::dayIndexesFromStart),
      key("dayIndexesFromFinish", &TaskReminder::dayIndexesFromFinish),
      key("snoozeTime", &TaskReminder::snoozeTime), key("snoozeDate", &TaskReminder::snoozeDate),
      key("snoozeTimeZone", &TaskReminder::snoozeTimeZone), key("sound", &TaskReminder::sound),
      key("timeSensitive", &TaskReminder::timeSensitive));

  /// A copy with these days and this trigger, and without day indexes.
  [[nodiscard]] TaskReminder with(EnumSet<DayOfWeek> days, Trigger newTrigger) const;
  /// A copy put off at this day and time.
  [[nodiscard]] TaskReminder withSnooze(std::optional<YYYYMMDD> date, std::optional<HHMMSS> time,
                                        std::optional<NotificationTimeZone> zone) const;

  /// The reminder as the other person's clock has it: the same moment by today's offsets, so that a
  /// summer clock counts as it does today. Where that moment falls on another date, days and day
  /// indexes move by one. The snooze is kept as it is, and `timeSensitive` becomes absent.
  ///
  /// A reminder that already is in the zone, or has no time of day, is returned unchanged; one with
  /// `timeZone` absent counts as being in the other zone.
  [[nodiscard]] TaskReminder convert(NotificationTimeZone to, TimeZone ownerTimeZone,
                                     TimeZone viewerTimeZone, Date now) const;
};

constexpr auto rawValues(std::type_identity<TaskReminder::TriggerType>) {
  using enum TaskReminder::TriggerType;
  return rawTexts<TaskReminder::TriggerType>({{timeOfDay, "tod"},
                                              {timeOfDayMuted, "todm"},
                                              {location, "loc"},
                                              {durationAfterStart, "das"},
                                              {durationBeforeFinish, "dbf"}});
}

}  // namespace velloro
