#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "OxKit/Platform.h"
#include "UserNotifications/UNNotificationRequest.h"

#include <cstdint>
#include <optional>
#include <string>

namespace velloro {

struct NotificationContent;

/// A notification that is planned, pending or delivered, as commands print it.
struct NotificationLine {
  std::string id;
  std::optional<std::string> task = {};  ///< The identifier of its task; absent for a badge.
  std::optional<Date> trigger = {};      ///< When it is or was to come; absent: at once.
  std::optional<Date> delivered = {};    ///< Absent until then.
  std::optional<std::string> title = {}, subtitle = {}, body = {}, category = {};
  std::optional<std::string> sound = {};  ///< A file, or "default"; absent: silent.
  bool timeSensitive = false;
  double relevance = 0;
  std::optional<std::int64_t> badge = {};
  bool image = false;

  static constexpr auto codingKeys =
      keys(key("id", &NotificationLine::id), key("task", &NotificationLine::task),
           key("trigger", &NotificationLine::trigger),
           key("delivered", &NotificationLine::delivered), key("title", &NotificationLine::title),
           key("subtitle", &NotificationLine::subtitle), key("body", &NotificationLine::body),
           key("category", &NotificationLine::category), key("sound", &NotificationLine::sound),
           key("timeSensitive", &NotificationLine::timeSensitive),
           key("relevance", &NotificationLine::relevance), key("badge", &NotificationLine::badge),
           key("image", &NotificationLine::image));

  /// One that is planned; its sound is the name of the effect.
  [[nodiscard]] static NotificationLine of(const NotificationContent& content);
  [[nodiscard]] static NotificationLine of(const UNNotificationRequest& request);
  [[nodiscard]] static NotificationLine of(const UNNotification& notification);

  /// What is shown: "Read: It is time", or "badge 3".
  [[nodiscard]] std::string text() const;
};

}  // namespace velloro
