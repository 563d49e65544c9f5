#pragma once

#include "OxKit/Platform.h"
#include "UserNotifications/UNNotificationContent.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velloro {

/// Notifications to try things out with, each as it would be delivered today.
///
///     NotificationSamples::named("partial")->title;    // "Drink water"
struct NotificationSamples {
  [[nodiscard]] static std::vector<std::string_view> names();
  /// Absent for a name that none has.
  [[nodiscard]] static std::optional<UNNotificationContent> named(std::string_view name);
};

}  // namespace velloro
