#pragma once

#include "UserNotifications/UNNotificationCategory.h"
#include "UserNotifications/UNNotificationRequest.h"
#include "UserNotifications/UNNotificationSettings.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// All that a program's notification centre keeps, as a value. An older version had this as its
/// file; in the tables of `NotificationRows`, what is not a request still has this form.
struct NotificationRecords {
  UNNotificationSettings settings = {};
  std::vector<UNNotificationCategory> categories = {};
  std::vector<UNNotificationRequest> pending = {};  ///< In the order in which they were added.
  std::vector<UNNotification> delivered = {};       ///< In the order in which they were delivered.
  std::int64_t badge = 0;  ///< The number on the program's icon; 0 for none.

  /// What the user answers who is asked to allow this: yes, unless they have denied it before.
  void authorize(UNAuthorizationOptions options);

  bool operator==(const NotificationRecords&) const = default;
  static constexpr auto codingKeys = keys(key("settings", &NotificationRecords::settings),
                                          key("categories", &NotificationRecords::categories),
                                          key("pending", &NotificationRecords::pending),
                                          key("delivered", &NotificationRecords::delivered),
                                          key("badge", &NotificationRecords::badge));

  /// Reads as much as can be read. What can't is left out, and the reasons go to `problems`.
  [[nodiscard]] static NotificationRecords fromText(std::string_view json,
                                                    std::vector<std::string>& problems);
};

}  // namespace platform
