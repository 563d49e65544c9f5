#pragma once

#include "OxKit/LocalizedKey.h"

namespace velloro {

/// The texts of notifications that are no reminders: about what was done, and about a running
/// timer. The reminders' are in ReminderWordingKeys.h.
namespace notification_text {

// What was done. A timer's end comes before the other two.
inline constexpr LocalizedKey timerCompleted{"NotificationTaskTimerCompleted", ""};
inline constexpr LocalizedKey completed{"NotificationTaskCompleted", ""};
inline constexpr LocalizedKey missed{"NotificationTaskMissed", ""};

/// {0} how long the timer has run, or has still to run, in words.
inline constexpr LocalizedKey progressCompleted{"TimedTask.Progress.Completed", "t"};
inline constexpr LocalizedKey progressRemaining{"TimedTask.Progress.Remaining", "t"};

// The buttons under a notification. The one that opens a link takes an arrow behind its text.
inline constexpr LocalizedKey markAsDone{"ActionCompleted", ""};
inline constexpr LocalizedKey markAsMissed{"ActionMissed", ""};
inline constexpr LocalizedKey snooze{"ActionSnooze", ""};
inline constexpr LocalizedKey openExternalUrl{"CustomUrl.OpenURL", ""};
inline constexpr LocalizedKey sendMessage{"SendMessage", ""};

// What only a desktop shows. An amount is typed, and the button beside it logs it.
inline constexpr LocalizedKey skip{"ActionSkip", ""};
inline constexpr LocalizedKey amount{"Agent.Amount", ""};
inline constexpr LocalizedKey logAmount{"Agent.LogAmount", ""};
/// {0} how many came while nobody was there to see them.
inline constexpr LocalizedKey missedReminders{"Agent.MissedReminders", "n"};

inline constexpr LocalizedKey all[] = {
    timerCompleted, completed,    missed,    progressCompleted, progressRemaining,
    markAsDone,     markAsMissed, snooze,    openExternalUrl,   sendMessage,
    skip,           amount,       logAmount, missedReminders};

}  // namespace notification_text
}  // namespace velloro
