#pragma once

#include "Foundation/Coding/Coding.h"

#include <cstdint>

namespace platform {

/// Whether the user lets the program notify at all.
enum class UNAuthorizationStatus : std::uint8_t { notDetermined, denied, authorized };

constexpr auto rawValues(std::type_identity<UNAuthorizationStatus>) {
  using enum UNAuthorizationStatus;
  return rawIntegers<UNAuthorizationStatus>({{notDetermined, 0}, {denied, 1}, {authorized, 2}});
}

/// Whether the user lets the program notify in one way.
enum class UNNotificationSetting : std::uint8_t { notSupported, disabled, enabled };

constexpr auto rawValues(std::type_identity<UNNotificationSetting>) {
  using enum UNNotificationSetting;
  return rawIntegers<UNNotificationSetting>({{notSupported, 0}, {disabled, 1}, {enabled, 2}});
}

/// A set of the ways to notify.
///
///     const auto options = UNAuthorizationOptions::alert | UNAuthorizationOptions::badge;
///     options.contains(UNAuthorizationOptions::sound);   // false
struct UNAuthorizationOptions {
  std::uint8_t rawValue = 0;

  static const UNAuthorizationOptions badge, sound, alert;

  [[nodiscard]] constexpr bool contains(UNAuthorizationOptions other) const {
    return (rawValue & other.rawValue) == other.rawValue;
  }
  friend constexpr UNAuthorizationOptions operator|(UNAuthorizationOptions one,
                                                    UNAuthorizationOptions other) {
    return {static_cast<std::uint8_t>(one.rawValue | other.rawValue)};
  }
  bool operator==(const UNAuthorizationOptions&) const = default;
};

inline constexpr UNAuthorizationOptions UNAuthorizationOptions::badge{1};
inline constexpr UNAuthorizationOptions UNAuthorizationOptions::sound{2};
inline constexpr UNAuthorizationOptions UNAuthorizationOptions::alert{4};

/// What the user allows the program. Nothing, until it has asked.
struct UNNotificationSettings {
  UNAuthorizationStatus authorizationStatus = UNAuthorizationStatus::notDetermined;
  UNNotificationSetting alertSetting = UNNotificationSetting::disabled;
  UNNotificationSetting lockScreenSetting = UNNotificationSetting::disabled;
  UNNotificationSetting notificationCenterSetting = UNNotificationSetting::disabled;
  UNNotificationSetting badgeSetting = UNNotificationSetting::disabled;
  UNNotificationSetting soundSetting = UNNotificationSetting::disabled;

  bool operator==(const UNNotificationSettings&) const = default;
  static constexpr auto codingKeys =
      keys(key("authorizationStatus", &UNNotificationSettings::authorizationStatus, initialValue),
           key("alertSetting", &UNNotificationSettings::alertSetting, initialValue),
           key("lockScreenSetting", &UNNotificationSettings::lockScreenSetting, initialValue),
           key("notificationCenterSetting", &UNNotificationSettings::notificationCenterSetting,
               initialValue),
           key("badgeSetting", &UNNotificationSettings::badgeSetting, initialValue),
           key("soundSetting", &UNNotificationSettings::soundSetting, initialValue));
};

}  // namespace platform
