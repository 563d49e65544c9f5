#pragma once

#include "UserNotifications/UNNotificationCategory.h"
#include "UserNotifications/UNNotificationRequest.h"
#include "UserNotifications/UNNotificationSettings.h"

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// All that a program's notification centre keeps, and its rules, as a value.
struct NotificationRecords {
  /// Older delivered notifications give way to newer ones.
  static constexpr std::size_t maximumDelivered = 100;

  UNNotificationSettings settings = {};
  std::vector<UNNotificationCategory> categories = {};
  std::vector<UNNotificationRequest> pending = {};  ///< In the order in which they were added.
  std::vector<UNNotification> delivered = {};       ///< In the order in which they were delivered.
  std::int64_t badge = 0;  ///< The number on the program's icon; 0 for none.

  /// What the user answers who is asked to allow this: yes, unless they have denied it before.
  void authorize(UNAuthorizationOptions options);
  /// Replaces all earlier ones. Fails for what can't be stored.
  [[nodiscard]] Result<void> setCategories(std::vector<UNNotificationCategory> replacements);
  /// Puts the request in the place of a pending one with its identifier. Fails where nothing is
  /// allowed, and for what can't be stored: a text that is not UTF-8, too deep a `userInfo`.
  [[nodiscard]] Result<void> add(UNNotificationRequest request);
  void removePending(const std::set<std::string>& identifiers);
  void removeDelivered(const std::set<std::string>& identifiers);

  /// When the next pending request falls due: the distant past for one without a trigger, the
  /// distant future when there is none.
  [[nodiscard]] Date nextDue() const;
  /// Moves what is due to the delivered ones and applies its badges, the earliest first; what fell
  /// due while the user denied it is dropped. Returns what is to be shown.
  std::vector<UNNotification> deliverDue(Date now);

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
