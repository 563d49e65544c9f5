#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/EnumSet.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <type_traits>

namespace velloro {

/// What a reminder can speak of: that a streak can grow, that it is at risk, how far the target is.
/// `reminder` speaks of nothing but the task.
enum class NotificationIndividualReminder : std::uint8_t {
  reminder,
  reminderTaskSharedWithMe,
  extendBest,
  nearlyBest,
  dontBreak,
  keepAlive,
  startNew,
  negativeStartNew,
  negativeStreak,
  negativeAlmostBest,
  negativeKeepAlive,
  keepAliveWeekProgress,
  keepAliveFortnightProgress,
  keepAliveMonthProgress,
  keepAliveYearProgress,
  missToBreak,
  missToBreakWeekProgress,
  missToBreakFortnightProgress,
  missToBreakMonthProgress,
  missToBreakYearProgress,
  missToBreakBestStreak,
  partialCompletionsTarget,
  weeklyTarget,
  fortnightlyTarget,
  monthlyTarget,
  yearlyTarget,
  dayMissed,
};

constexpr auto rawValues(std::type_identity<NotificationIndividualReminder>) {
  return caseNames<NotificationIndividualReminder::dayMissed>();
}

using NotificationIndividualReminders = EnumSet<NotificationIndividualReminder>;

}  // namespace velloro
