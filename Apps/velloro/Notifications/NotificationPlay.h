#pragma once

#include "AppExtensions/NotificationViewController.h"
#include "Foundation/Coding/PropertyList.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// An answer to a notification, played in virtual time. Times are seconds from the answer on.
struct NotificationPlay {
  struct Event {
    double time = 0;
    std::string what;  ///< "state" or "caption".
    std::string value;
  };

  std::vector<Event> timeline;
  std::optional<UNNotificationContentExtensionResponseOption> option;
  double optionTime = 0;
  std::optional<UNNotificationResponse> forwarded;
  static constexpr int framesPerSecond = 30;

  /// Takes a frame; frames come one by one, in their order.
  using TakeFrame = std::function<void(const CGImage&)>;

  /// \param actionIdentifier Any text, as it would come with the answer.
  /// \param take Null where no frames are wanted.
  [[nodiscard]] static NotificationPlay of(const UNNotification& notification,
                                           const std::string& actionIdentifier,
                                           const NotificationViewController::Screen& screen,
                                           const TakeFrame& take);

  [[nodiscard]] PropertyList report() const;
  [[nodiscard]] std::string text() const;
};

}  // namespace velloro
