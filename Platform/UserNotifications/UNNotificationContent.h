#pragma once

#include "Foundation/Coding/Coding.h"
#include "Foundation/Coding/PropertyList.h"
#include "UserNotifications/UNNotificationAttachment.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace platform {

/// How much a notification may interrupt its reader.
enum class UNNotificationInterruptionLevel : std::uint8_t {
  passive,
  active,
  timeSensitive,
  critical
};

constexpr auto rawValues(std::type_identity<UNNotificationInterruptionLevel>) {
  using enum UNNotificationInterruptionLevel;
  return rawIntegers<UNNotificationInterruptionLevel>(
      {{passive, 0}, {active, 1}, {timeSensitive, 2}, {critical, 3}});
}

/// What is heard when a notification is shown.
struct UNNotificationSound {
  std::optional<std::string> name = {};  ///< A sound file of the program; absent: the system's own.

  [[nodiscard]] static UNNotificationSound defaultSound() { return {}; }
  /// \param name Such as "Sounds/sfx_glow_positive.caf".
  [[nodiscard]] static UNNotificationSound soundNamed(std::string name) {
    return {.name = std::move(name)};
  }

  bool operator==(const UNNotificationSound&) const = default;
  static constexpr auto codingKeys = keys(key("name", &UNNotificationSound::name));
};

/// What one notification says and carries. Every key of its JSON form may be missing, so a person
/// can write one by hand:
///
///     const auto content = JSONDecoder{}.decode<UNNotificationContent>(
///         R"({"categoryIdentifier": "nm.c.r", "title": "Drink", "userInfo": {"a": 1}})");
///     content.userInfo["a"].integer();   // 1
struct UNNotificationContent {
  std::string categoryIdentifier = {};  ///< Names the `UNNotificationCategory`; empty for none.
  std::string title = {};  ///< This and the next two are empty where there is no such line.
  std::string subtitle = {};
  std::string body = {};
  /// What the sender gives along, a dictionary. It is kept as plain JSON: `Data` and `Date` in it
  /// come back as texts and numbers. Something else, as a damaged file may hold, is kept as it is.
  PropertyList userInfo = PropertyList::Dictionary{};
  /// The number on the program's icon from the delivery on. 0 and below clear it; absent leaves it.
  std::optional<std::int64_t> badge = {};
  std::optional<UNNotificationSound> sound = {};  ///< Absent: silent.
  std::vector<UNNotificationAttachment> attachments = {};
  UNNotificationInterruptionLevel interruptionLevel = UNNotificationInterruptionLevel::active;
  double relevanceScore = 0;  ///< 0 to 1: which of a program's notifications to put forward.

  /// Whether there is something to read. What has no line is never shown: it only sets the badge.
  [[nodiscard]] bool hasText() const {
    return !title.empty() || !subtitle.empty() || !body.empty();
  }

  bool operator==(const UNNotificationContent&) const = default;
  static constexpr auto codingKeys =
      keys(key("categoryIdentifier", &UNNotificationContent::categoryIdentifier, initialValue),
           key("title", &UNNotificationContent::title, initialValue),
           key("subtitle", &UNNotificationContent::subtitle, initialValue),
           key("body", &UNNotificationContent::body, initialValue),
           key("userInfo", &UNNotificationContent::userInfo, initialValue),
           key("badge", &UNNotificationContent::badge), key("sound", &UNNotificationContent::sound),
           key("attachments", &UNNotificationContent::attachments, initialValue),
           key("interruptionLevel", &UNNotificationContent::interruptionLevel, initialValue),
           key("relevanceScore", &UNNotificationContent::relevanceScore, initialValue));
};

/// Content is a value, so every copy can be changed.
using UNMutableNotificationContent = UNNotificationContent;

}  // namespace platform
