#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "OxKit/Platform.h"
#include "UserNotifications/UNNotificationRequest.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// A notification of the notification centre, as `velloro notification list` prints it.
struct CenterLine {
  std::string id;
  std::optional<std::string> task;  ///< The identifier of its task; absent for a badge.
  std::optional<Date> trigger;      ///< When it is or was to come; absent: at once.
  std::optional<Date> delivered;    ///< Absent while it is pending.
  std::string title, subtitle, body;
  std::string category;
  std::optional<std::string> sound;  ///< A file, or "default"; absent: silent.
  bool timeSensitive = false;
  double relevance = 0;
  std::optional<std::int64_t> badge;
  bool image = false;

  static constexpr auto codingKeys =
      keys(key("id", &CenterLine::id), key("task", &CenterLine::task),
           key("trigger", &CenterLine::trigger), key("delivered", &CenterLine::delivered),
           key("title", &CenterLine::title), key("subtitle", &CenterLine::subtitle),
           key("body", &CenterLine::body), key("category", &CenterLine::category),
           key("sound", &CenterLine::sound), key("timeSensitive", &CenterLine::timeSensitive),
           key("relevance", &CenterLine::relevance), key("badge", &CenterLine::badge),
           key("image", &CenterLine::image));

  [[nodiscard]] static CenterLine of(const UNNotificationRequest& request);
  [[nodiscard]] static CenterLine of(const UNNotification& notification);

  /// What is shown: "Read: It is time", or "badge 3".
  [[nodiscard]] std::string text() const;
};

/// What the notification centre of the program holds, in the order of time.
struct CenterReport {
  /// Those without a time, which come at once, first.
  [[nodiscard]] static std::vector<CenterLine> pending();
  /// By the time at which they were delivered.
  [[nodiscard]] static std::vector<CenterLine> delivered();
};

/// One line per notification, with the time by the clock of the device.
[[nodiscard]] std::string table(const std::vector<CenterLine>& lines);

}  // namespace velloro
