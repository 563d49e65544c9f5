#pragma once

#include "Notifications/NotificationCategory.h"
#include "Notifications/NotificationData.h"
#include "OxDateTime/YYYYMMDD.h"
#include "UserNotifications/UNNotificationRequest.h"

#include <optional>
#include <string>

namespace velloro {

/// A delivered notification that its user may still answer, as the agent sees it.
struct OpenReminder {
  /// What is shown under the same key takes its place: all reminders of a task have one, and each
  /// other notification its own.
  std::string key;
  /// This request at the moment that it was due. The clock may be set back across that moment, and
  /// a request be planned and delivered once more; it is still the same occurrence.
  std::string occurrence;
  Date due;  ///< When it was to come.
  UNNotification notification;
  std::optional<NotificationCategory> category = {};
  /// What it carries of its task; absent for what can't be read.
  std::optional<NotificationData> data = {};
  YYYYMMDD day = {};  ///< The logical day of the task that it reminds of.
  bool isReminder = false;

  bool operator==(const OpenReminder&) const = default;

  [[nodiscard]] static OpenReminder of(const UNNotification& notification);
  [[nodiscard]] const std::string& id() const { return notification.request.identifier; }
  [[nodiscard]] const UNNotificationContent& content() const {
    return notification.request.content;
  }
};

}  // namespace velloro
