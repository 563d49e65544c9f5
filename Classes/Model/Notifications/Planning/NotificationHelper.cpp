#include "Notifications/Planning/NotificationHelper.h"

#include <algorithm>
#include <iterator>

namespace velloro {

using ScheduleRequest = NotificationHelper::ScheduleRequest;

void ScheduleRequest::merge(ScheduleRequest&& other) {
  std::ranges::move(other.notifications, std::back_inserter(notifications));
  cancelPending.merge(other.cancelPending);
  cancelDelivered.merge(other.cancelDelivered);
}

ScheduleRequest ScheduleRequest::at(Date now) && {
  std::erase_if(notifications, [&](const NotificationContent& content) {
    return content.trigger && content.trigger->date < now;
  });
  for (const auto& content : notifications) {
    cancelPending.erase(content.notificationId.str);
    cancelDelivered.erase(content.notificationId.str);
  }
  return std::move(*this);
}

}  // namespace velloro
