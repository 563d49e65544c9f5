#pragma once

#include "Notifications/NotificationCategory.h"
#include "Notifications/NotificationData.h"
#include "Notifications/NotificationID.h"
#include "Notifications/NotificationRelevance.h"
#include "UserNotifications/UNNotificationRequest.h"
#include "VelloroCore/Reminders/SoundEffect.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace velloro {

/// One local notification before it is handed to the platform. `NotificationContentBuilder` makes
/// those that the program sends.
///
///     const NotificationContent count{.notificationId = NotificationID::badge(0),
///                                     .category = NotificationCategory::badge,
///                                     .badge = 3};
///     count.request().content.categoryIdentifier;    // "nm.c.b"
struct NotificationContent {
  using Trigger = NotificationTrigger;
  using RelevanceLevel = velloro::RelevanceLevel;

  NotificationID notificationId;
  std::optional<Trigger> trigger = {};  ///< Absent: at once.
  std::optional<NotificationCategory> category = {};
  std::optional<std::string> title = {};
  std::optional<std::string> subtitle = {};
  std::optional<std::string> body = {};
  std::optional<NotificationData> data = {};
  std::optional<std::int64_t> badge = {};  ///< -1 removes the number; absent leaves it.
  std::optional<ConcreteSoundEffect> sound = ConcreteSoundEffect{};  ///< Absent: silent.
  std::optional<std::filesystem::path> imageUrl = {};
  bool timeSensitive = false;  ///< Whether it may interrupt a reader who wants no interruption.
  RelevanceLevel relevanceLevel = RelevanceLevel::reminderRegularPriority;

  bool operator==(const NotificationContent&) const = default;

  /// For the notification centre. The image is copied to the centre's folder; what can't be written
  /// or copied is left out, and so is a trigger whose moment has passed.
  [[nodiscard]] UNNotificationRequest request() const;
};

/// The file that plays an effect, absent for what has none: `system` is the platform's own sound
/// and `nilSound` none.
///
///     soundName({SoundEffect::glow, SoundEffectDirection::superPositive});
///         // "Sounds/sfx_glow_very_positive.caf"
[[nodiscard]] std::optional<std::string> soundName(const ConcreteSoundEffect& sound);

}  // namespace velloro
