#include "velloro/Notifications/CenterReport.h"

#include "Foundation/Process/Terminal.h"
#include "UserNotifications/UNUserNotificationCenter.h"
#include "velloro/Output/Output.h"

#include <algorithm>

namespace velloro {
namespace {

std::string soundText(const UNNotificationSound& sound) {
  return sound.name.value_or("default");
}

/// From the records of a centre, which it reads on a queue of its own.
template <typename Record>
std::vector<CenterLine> lines(
    void (UNUserNotificationCenter::*get)(UNUserNotificationCenter::Handler<std::vector<Record>>)) {
  std::vector<CenterLine> lines;
  auto center = UNUserNotificationCenter::currentNotificationCenter();
  (center.*get)([&](const std::vector<Record>& records) {
    for (const Record& record : records) lines.push_back(CenterLine::of(record));
  });
  center.flush();
  return lines;
}

}  // namespace

CenterLine CenterLine::of(const UNNotificationRequest& request) {
  const UNNotificationContent& content = request.content;
  const PropertyList id = content.userInfo["velloro"]["task"]["taskId"];
  CenterLine line{
      .id = request.identifier,
      .task = {},
      .trigger = {},
      .delivered = {},
      .title = content.title,
      .subtitle = content.subtitle,
      .body = content.body,
      .category = content.categoryIdentifier,
      .sound = content.sound.transform(soundText),
      .timeSensitive = content.interruptionLevel >= UNNotificationInterruptionLevel::timeSensitive,
      .relevance = content.relevanceScore,
      .badge = content.badge,
      .image = !content.attachments.empty()};
  if (const std::string* text = id.text()) line.task = *text;
  if (request.trigger) line.trigger = request.trigger->nextTriggerDate();
  return line;
}

CenterLine CenterLine::of(const UNNotification& notification) {
  CenterLine line = of(notification.request);
  line.delivered = notification.date;
  return line;
}

std::string CenterLine::text() const {
  std::string text;
  for (const std::string& part : {title, subtitle, body}) {
    if (!part.empty()) text += (text.empty() ? "" : ": ") + terminalText(part);
  }
  if (!text.empty() || !badge) return text;
  return *badge > 0 ? "badge " + std::to_string(*badge) : "no badge";
}

std::vector<CenterLine> CenterReport::pending() {
  auto all = lines(&UNUserNotificationCenter::getPendingNotificationRequestsWithCompletionHandler);
  std::ranges::stable_sort(all, {}, &CenterLine::trigger);
  return all;
}

std::vector<CenterLine> CenterReport::delivered() {
  auto all = lines(&UNUserNotificationCenter::getDeliveredNotificationsWithCompletionHandler);
  std::ranges::stable_sort(all, {}, &CenterLine::delivered);
  return all;
}

std::string table(const std::vector<CenterLine>& lines) {
  if (lines.empty()) return "No notifications.\n";
  std::vector<std::vector<std::string>> rows;
  for (const CenterLine& line : lines) {
    const auto when = line.delivered ? line.delivered : line.trigger;
    rows.push_back({when ? instantText(*when) : "at once", terminalText(line.id), line.text()});
  }
  return aligned(rows);
}

}  // namespace velloro
