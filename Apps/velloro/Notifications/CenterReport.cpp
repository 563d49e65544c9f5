#include "velloro/Notifications/CenterReport.h"

#include "Foundation/Process/Terminal.h"
#include "UserNotifications/UNUserNotificationCenter.h"
#include "velloro/Output/Output.h"

#include <algorithm>

namespace velloro {
namespace {

/// From the records of a centre, which it reads on a queue of its own.
template <typename Record>
std::vector<NotificationLine> lines(
    void (UNUserNotificationCenter::*get)(UNUserNotificationCenter::Handler<std::vector<Record>>)) {
  std::vector<NotificationLine> lines;
  auto center = UNUserNotificationCenter::currentNotificationCenter();
  (center.*get)([&](const std::vector<Record>& records) {
    for (const Record& record : records) lines.push_back(NotificationLine::of(record));
  });
  center.flush();
  return lines;
}

}  // namespace

std::vector<NotificationLine> CenterReport::pending() {
  auto all = lines(&UNUserNotificationCenter::getPendingNotificationRequestsWithCompletionHandler);
  std::ranges::stable_sort(all, {}, &NotificationLine::trigger);
  return all;
}

std::vector<NotificationLine> CenterReport::delivered() {
  auto all = lines(&UNUserNotificationCenter::getDeliveredNotificationsWithCompletionHandler);
  std::ranges::stable_sort(all, {}, &NotificationLine::delivered);
  return all;
}

std::string table(const std::vector<NotificationLine>& lines) {
  if (lines.empty()) return "No notifications.\n";
  std::vector<std::vector<std::string>> rows;
  for (const NotificationLine& line : lines) {
    const auto when = line.delivered ? line.delivered : line.trigger;
    rows.push_back({when ? instantText(*when) : "at once", terminalText(line.id), line.text()});
  }
  return aligned(rows);
}

}  // namespace velloro
