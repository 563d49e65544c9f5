#include "Notifications/NotificationID.h"

#include <algorithm>

namespace velloro {

NotificationID NotificationID::reminder(YYYYMMDD day, const UniqueID& task, std::size_t index) {
  return {"r" + std::to_string(day.d) + "." + task.stringValue() + "." + std::to_string(index)};
}

NotificationID NotificationID::completion(YYYYMMDD day, const UniqueID& task) {
  return {"c" + std::to_string(day.intValue()) + "." + task.stringValue()};
}

NotificationID NotificationID::timedProgress(const UniqueID& task, std::size_t index) {
  return {"tp" + task.stringValue() + "." + std::to_string(index)};
}

NotificationID NotificationID::badge(std::size_t index) {
  return {"b." + std::to_string(index)};
}

NotificationID NotificationID::spoken(const UniqueID& reminder, const UniqueID& task) {
  return {"s" + reminder.stringValue() + "." + task.stringValue()};
}

std::size_t NotificationID::numRemindersToCancel(std::size_t numReminders) {
  if (numReminders == 0) return 4;
  return std::clamp<std::size_t>(numReminders, 2, 20);
}

}  // namespace velloro
