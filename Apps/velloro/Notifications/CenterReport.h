#pragma once

#include "velloro/Notifications/NotificationLine.h"

#include <string>
#include <vector>

namespace velloro {

/// What the notification centre of the program holds, in the order of time.
struct CenterReport {
  /// Those without a time, which come at once, first.
  [[nodiscard]] static std::vector<NotificationLine> pending();
  /// By the time at which they were delivered.
  [[nodiscard]] static std::vector<NotificationLine> delivered();
};

/// One line per notification, with the time by the clock of the device.
[[nodiscard]] std::string table(const std::vector<NotificationLine>& lines);

}  // namespace velloro
