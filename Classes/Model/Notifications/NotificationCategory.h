#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/LocalizedKey.h"
#include "OxKit/Platform.h"
#include "UserNotifications/UNNotificationCategory.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace velloro {

/// The kinds of notification, each with its buttons. A category that a later program sends reads as
/// none, and its notification as an ordinary one.
///
///     actions(NotificationCategory::badge).size();    // 0
enum class NotificationCategory : std::uint8_t {
  taskCompleted,
  reminderPositive,
  reminderNegative,
  reminderPositiveSharedWithMe,
  reminderNegativeSharedWithMe,
  reminderPositiveWithURL,
  reminderNegativeWithURL,
  badge,
  sharedTaskActionOccurredWithoutContactDetails,  ///< Sent by others; so is the next.
  sharedTaskActionOccurredWithContactDetails,
  timedTaskProgressComplete,
  timedTaskProgressRemaining,
};

constexpr auto rawValues(std::type_identity<NotificationCategory>) {
  using enum NotificationCategory;
  return rawTexts<NotificationCategory>(
      {{taskCompleted, "nm.c.tc"},
       {reminderPositive, "nm.c.r"},
       {reminderNegative, "nm.c.rn"},
       {reminderPositiveSharedWithMe, "nm.c.r.swm"},
       {reminderNegativeSharedWithMe, "nm.c.rn.swm"},
       {reminderPositiveWithURL, "nm.c.r.u"},
       {reminderNegativeWithURL, "nm.c.rn.u"},
       {badge, "nm.c.b"},
       {sharedTaskActionOccurredWithoutContactDetails, "nm.st.ao"},
       {sharedTaskActionOccurredWithContactDetails, "nm.st.ao.c"},
       {timedTaskProgressComplete, "nm.tt.pc"},
       {timedTaskProgressRemaining, "nm.tt.pr"}});
}

/// What a button of a notification does. The raw value is the identifier that the answer carries.
enum class NotificationAction : std::uint8_t {
  markAsDone,
  markAsMissed,
  snooze,
  openExternalUrl,
  sendMessage,
};

constexpr auto rawValues(std::type_identity<NotificationAction>) {
  using enum NotificationAction;
  return rawTexts<NotificationAction>(
      {{markAsDone, "NotificationManager.Action.MarkAsDone"},
       {markAsMissed, "NotificationManager.Action.MarkAsMissed"},
       {snooze, "NotificationManager.Action.Snooze"},
       {openExternalUrl, "NotificationManager.Action.OpenExternalURL"},
       {sendMessage, "NotificationManager.Action.SendMessage"}});
}

/// From the first button to the last.
[[nodiscard]] std::span<const NotificationAction> actions(NotificationCategory category);

/// What stands on the button. Behind the one that leaves the program there is an arrow.
[[nodiscard]] std::string localizedTitle(NotificationAction action);

/// All categories, as they are registered with the notification centre.
[[nodiscard]] std::vector<UNNotificationCategory> notificationCategories();

}  // namespace velloro
