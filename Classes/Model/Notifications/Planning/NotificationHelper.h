#pragma once

#include "Notifications/NotificationContent.h"

#include <set>
#include <string>
#include <vector>

namespace velloro {

struct NotificationHelper {
  /// What is to be added to the notification centre, and what is to be removed from it before. An
  /// identifier that is added is not removed.
  ///
  ///     NotificationHelper::ScheduleRequest request{.cancelPending = {"b.0"}};
  ///     request.merge({.notifications = {{.notificationId = NotificationID::badge(0)}}});
  ///     std::move(request).at(now).cancelPending.size();    // 0
  struct ScheduleRequest {
    /// Ordered by the text, so that equal requests have equal effects.
    using Identifiers = std::set<std::string>;

    std::vector<NotificationContent> notifications = {};  ///< In the order of adding.
    Identifiers cancelPending = {};
    Identifiers cancelDelivered = {};

    bool operator==(const ScheduleRequest&) const = default;

    /// Adds what another one asks for.
    void merge(ScheduleRequest&& other);
    /// What is left of it at an instant: without what should have been delivered before, and with
    /// nothing removed that is added.
    [[nodiscard]] ScheduleRequest at(Date now) &&;
  };
};

}  // namespace velloro
