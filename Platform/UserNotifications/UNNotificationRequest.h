#pragma once

#include "UserNotifications/UNNotificationContent.h"
#include "UserNotifications/UNNotificationTrigger.h"

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// A notification that is to be delivered.
struct UNNotificationRequest {
  std::string identifier;  ///< A later request with the same one takes its place.
  UNNotificationContent content = {};
  std::optional<UNCalendarNotificationTrigger> trigger = {};  ///< Absent: at once.

  bool operator==(const UNNotificationRequest&) const = default;
  static constexpr auto codingKeys = keys(key("identifier", &UNNotificationRequest::identifier),
                                          key("content", &UNNotificationRequest::content),
                                          key("trigger", &UNNotificationRequest::trigger));
};

/// A notification that was delivered.
struct UNNotification {
  Date date;  ///< When it was.
  UNNotificationRequest request;

  bool operator==(const UNNotification&) const = default;
  static constexpr auto codingKeys =
      keys(key("date", &UNNotification::date), key("request", &UNNotification::request));
};

/// The action of a reader who opens the notification itself and none of its buttons.
inline constexpr std::string_view UNNotificationDefaultActionIdentifier = "default";

/// A reader's answer to a notification.
struct UNNotificationResponse {
  UNNotification notification;
  std::string actionIdentifier;  ///< Of a `UNNotificationAction`, or the default one.

  bool operator==(const UNNotificationResponse&) const = default;
};

}  // namespace platform
