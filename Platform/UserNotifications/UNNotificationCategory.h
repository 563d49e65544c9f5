#pragma once

#include "Foundation/Coding/Coding.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace platform {

/// What an action's button asks of the device first.
enum class UNNotificationActionOptions : std::uint8_t {
  none,
  authenticationRequired,  ///< The device is to be unlocked.
  foreground,              ///< The program is to come to the front.
};

constexpr auto rawValues(std::type_identity<UNNotificationActionOptions>) {
  using enum UNNotificationActionOptions;
  return rawIntegers<UNNotificationActionOptions>(
      {{none, 0}, {authenticationRequired, 1}, {foreground, 4}});
}

struct UNNotificationActionIcon {
  std::string systemImageName;  ///< Such as "moon.zzz".

  bool operator==(const UNNotificationActionIcon&) const = default;
  static constexpr auto codingKeys =
      keys(key("systemImageName", &UNNotificationActionIcon::systemImageName));
};

/// A button below a notification.
struct UNNotificationAction {
  std::string identifier;
  std::string title;
  UNNotificationActionOptions options = UNNotificationActionOptions::none;
  std::optional<UNNotificationActionIcon> icon = {};

  bool operator==(const UNNotificationAction&) const = default;
  static constexpr auto codingKeys =
      keys(key("identifier", &UNNotificationAction::identifier),
           key("title", &UNNotificationAction::title),
           key("options", &UNNotificationAction::options, initialValue),
           key("icon", &UNNotificationAction::icon));
};

/// The buttons of the notifications that name this category, from the first to the last.
struct UNNotificationCategory {
  std::string identifier;
  std::vector<UNNotificationAction> actions = {};
  std::vector<std::string> intentIdentifiers = {};

  bool operator==(const UNNotificationCategory&) const = default;
  static constexpr auto codingKeys =
      keys(key("identifier", &UNNotificationCategory::identifier),
           key("actions", &UNNotificationCategory::actions, initialValue),
           key("intentIdentifiers", &UNNotificationCategory::intentIdentifiers, initialValue));
};

}  // namespace platform
