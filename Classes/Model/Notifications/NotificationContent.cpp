#include "Notifications/NotificationContent.h"

#include "OxLog/Log.h"

#include <string_view>

namespace velloro {
namespace {

std::string_view suffix(SoundEffectDirection direction) {
  switch (direction) {
    case SoundEffectDirection::negative:
      return "_negative";
    case SoundEffectDirection::neutral:
      return "_neutral";
    case SoundEffectDirection::positive:
      return "_positive";
    case SoundEffectDirection::superPositive:
      break;
  }
  return "_very_positive";
}

std::optional<UNNotificationSound> platformSound(const std::optional<ConcreteSoundEffect>& sound) {
  if (!sound) return std::nullopt;
  if (sound->effect == SoundEffect::system) return UNNotificationSound::defaultSound();
  return soundName(*sound).transform(UNNotificationSound::soundNamed);
}

std::vector<UNNotificationAttachment> attachments(const NotificationContent& content) {
  if (!content.imageUrl) return {};
  auto attachment = UNNotificationAttachment::attachmentWithIdentifier(content.notificationId.str,
                                                                       *content.imageUrl);
  if (attachment) return {*std::move(attachment)};
  Log::notifications.error(
      [&] { return "Unable to attach the image: " + attachment.error()->localizedDescription(); });
  return {};
}

}  // namespace

UNNotificationRequest NotificationContent::request() const {
  UNMutableNotificationContent content{.title = title.value_or(""),
                                       .subtitle = subtitle.value_or(""),
                                       .body = body.value_or(""),
                                       .badge = badge,
                                       .sound = platformSound(sound),
                                       .attachments = attachments(*this),
                                       .relevanceScore = relevanceScore(relevanceLevel)};
  if (category) content.categoryIdentifier = rawValue(*category);
  if (data) content.userInfo = data->userInfo();
  if (timeSensitive) {
    content.interruptionLevel = UNNotificationInterruptionLevel::timeSensitive;
  }
  return {
      .identifier = notificationId.str,
      .content = std::move(content),
      .trigger = trigger ? UNCalendarNotificationTrigger::fromDate(trigger->date) : std::nullopt};
}

std::optional<std::string> soundName(const ConcreteSoundEffect& sound) {
  if (!hasDirections(sound.effect) || sound.effect == SoundEffect::nilSound) return std::nullopt;
  return "Sounds/sfx_" + std::string(rawValue(sound.effect)) +
         std::string(suffix(sound.direction)) + ".caf";
}

}  // namespace velloro
