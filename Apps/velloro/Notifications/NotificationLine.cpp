#include "velloro/Notifications/NotificationLine.h"

#include "Foundation/Process/Terminal.h"
#include "Notifications/Planning/NotificationPlanner.h"

namespace velloro {
namespace {

std::string soundText(const UNNotificationSound& sound) {
  return sound.name.value_or("default");
}

std::string effectName(const ConcreteSoundEffect& sound) {
  return std::string(rawValue(sound.effect));
}

}  // namespace

NotificationLine NotificationLine::of(const NotificationContent& content) {
  NotificationLine line{.id = content.notificationId.str,
                        .title = content.title,
                        .subtitle = content.subtitle,
                        .body = content.body,
                        .sound = content.sound.transform(effectName),
                        .timeSensitive = content.timeSensitive,
                        .relevance = relevanceScore(content.relevanceLevel),
                        .badge = content.badge,
                        .image = content.imageUrl.has_value()};
  if (content.data) line.task = content.data->task.taskId.stringValue();
  if (content.category) line.category = rawValue(*content.category);
  if (content.trigger) line.trigger = content.trigger->date;
  return line;
}

NotificationLine NotificationLine::of(const UNNotificationRequest& request) {
  const UNNotificationContent& content = request.content;
  const PropertyList id = content.userInfo["velloro"]["task"]["taskId"];
  NotificationLine line{
      .id = request.identifier,
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

NotificationLine NotificationLine::of(const UNNotification& notification) {
  NotificationLine line = of(notification.request);
  line.delivered = notification.date;
  return line;
}

std::string NotificationLine::text() const {
  std::string text;
  for (const auto& part : {title, subtitle, body}) {
    if (part && !part->empty()) text += (text.empty() ? "" : ": ") + terminalText(*part);
  }
  if (!text.empty() || !badge) return text;
  return *badge > 0 ? "badge " + std::to_string(*badge) : "no badge";
}

}  // namespace velloro
