#include "Notifications/NotificationCategory.h"

#include "OxKit/Localization.h"
#include "VelloroCore/Reminders/NotificationTextKeys.h"

#include <array>

namespace velloro {
namespace {

using enum NotificationAction;
using Options = UNNotificationActionOptions;

struct ActionRow {
  NotificationAction value;
  LocalizedKey title;
  Options options;
  std::string_view systemImageName;
};

constexpr ActionRow actionRows[] = {
    {markAsDone, notification_text::markAsDone, Options::authenticationRequired,
     "checkmark.circle"},
    {markAsMissed, notification_text::markAsMissed, Options::authenticationRequired,
     "multiply.circle"},
    {snooze, notification_text::snooze, Options::authenticationRequired, "moon.zzz"},
    {openExternalUrl, notification_text::openExternalUrl, Options::foreground,
     "arrow.up.right.square"},
    {sendMessage, notification_text::sendMessage, Options::foreground, "message"},
};

constexpr std::array positiveActions = {snooze, markAsDone};
constexpr std::array negativeActions = {snooze, markAsMissed};
constexpr std::array positiveActionsWithURL = {openExternalUrl, snooze, markAsDone};
constexpr std::array negativeActionsWithURL = {openExternalUrl, snooze, markAsMissed};
constexpr std::array messageActions = {sendMessage};

/// North east, and drawn as a letter rather than as an emoji.
constexpr std::string_view leavingArrow = " \u2197\uFE0E";

UNNotificationAction registered(NotificationAction action) {
  const ActionRow& row = rowOf(actionRows, action);
  return {.identifier = std::string(rawValue(action)),
          .title = localizedTitle(action),
          .options = row.options,
          .icon = UNNotificationActionIcon{std::string(row.systemImageName)}};
}

}  // namespace

std::span<const NotificationAction> actions(NotificationCategory category) {
  using enum NotificationCategory;
  switch (category) {
    case reminderPositive:
      return positiveActions;
    case reminderNegative:
      return negativeActions;
    case reminderPositiveWithURL:
      return positiveActionsWithURL;
    case reminderNegativeWithURL:
      return negativeActionsWithURL;
    case sharedTaskActionOccurredWithContactDetails:
      return messageActions;
    default:
      return {};
  }
}

std::string localizedTitle(NotificationAction action) {
  std::string title = localized(rowOf(actionRows, action).title);
  if (action == openExternalUrl) title += leavingArrow;
  return title;
}

std::vector<UNNotificationCategory> notificationCategories() {
  std::vector<UNNotificationCategory> categories;
  for (const NotificationCategory category : allCases<NotificationCategory>()) {
    UNNotificationCategory& added = categories.emplace_back();
    added.identifier = rawValue(category);
    for (const NotificationAction action : actions(category)) {
      added.actions.push_back(registered(action));
    }
  }
  return categories;
}

}  // namespace velloro
