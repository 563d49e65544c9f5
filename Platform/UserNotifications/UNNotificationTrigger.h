#pragma once

#include "Foundation/Coding/Coding.h"
#include "Foundation/Time/Calendar.h"

#include <optional>

namespace platform {

/// Delivers a notification once, when the clock on the wall shows these components, in whatever
/// zone the device then is. A trigger whose moment has passed delivers at once.
///
///     const auto trigger = UNCalendarNotificationTrigger::fromDate(Date::now() + 60.5);
///     trigger->nextTriggerDate() == Date::now() + 60;    // true: it is cut to a whole second
struct UNCalendarNotificationTrigger {
  /// Year to second; an absent one counts as `Calendar::date` has it.
  DateComponents dateComponents;

  [[nodiscard]] static UNCalendarNotificationTrigger triggerWithDateMatchingComponents(
      const DateComponents& components) {
    return {components};
  }
  /// The components of `date` in the current zone. Absent for a date that is not in the future: a
  /// request without a trigger is delivered at once.
  [[nodiscard]] static std::optional<UNCalendarNotificationTrigger> fromDate(Date date);

  /// When it delivers, by the current zone; absent beyond the calendar's range.
  [[nodiscard]] std::optional<Date> nextTriggerDate() const;

  bool operator==(const UNCalendarNotificationTrigger&) const = default;

  // {"year":2024,"month":3,"day":7,"hour":12,"minute":30,"second":0} (Coding.h)
  void encode(Encoder& to) const;
  static UNCalendarNotificationTrigger decode(const Decoder& from);
};

}  // namespace platform
