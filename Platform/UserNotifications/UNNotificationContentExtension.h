#pragma once

#include "Foundation/Coding/RawValue.h"
#include "Foundation/Values/Geometry.h"
#include "UserNotifications/UNNotificationRequest.h"

#include <cstdint>
#include <functional>

namespace platform {

/// What is to become of an expanded notification after an action.
enum class UNNotificationContentExtensionResponseOption : std::uint8_t {
  doNotDismiss,             ///< It stays.
  dismiss,                  ///< It goes.
  dismissAndForwardAction,  ///< It goes, and the program itself gets the response.
};

constexpr auto rawValues(std::type_identity<UNNotificationContentExtensionResponseOption>) {
  using enum UNNotificationContentExtensionResponseOption;
  return rawIntegers<UNNotificationContentExtensionResponseOption>(
      {{doNotDismiss, 0}, {dismiss, 1}, {dismissAndForwardAction, 2}});
}

/// Draws an expanded notification and plays its actions. A `UNNotificationContentExtensionHost`
/// makes it and calls it, always on the main queue.
class UNNotificationContentExtension {
 public:
  using CompletionHandler =
      std::move_only_function<void(UNNotificationContentExtensionResponseOption)>;

  virtual ~UNNotificationContentExtension() = default;

  /// A notification is to be drawn: the first one, or one in the place of that before.
  virtual void didReceive(const UNNotification& notification) = 0;
  /// The reader has chosen an action. The handler may be kept and called later, from any thread;
  /// one that is never called leaves the notification as it is.
  virtual void didReceive(const UNNotificationResponse& response,
                          CompletionHandler completionHandler) = 0;
  /// In points: the room that it would like to have.
  [[nodiscard]] virtual CGSize preferredContentSize() const = 0;
};

}  // namespace platform
