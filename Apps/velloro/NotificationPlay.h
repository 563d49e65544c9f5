#pragma once

#include "AppExtensions/NotificationViewController.h"
#include "Foundation/PropertyList.h"

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
  std::vector<std::shared_ptr<const CGImage>> frames;

  static constexpr int framesPerSecond = 30;

  /// \param actionIdentifier Any text, as it would come with the answer.
  [[nodiscard]] static NotificationPlay of(const UNNotification& notification,
                                           const std::string& actionIdentifier,
                                           const NotificationViewController::Screen& screen,
                                           bool wantsFrames);

  [[nodiscard]] PropertyList report() const;
  [[nodiscard]] std::string text() const;
};

}  // namespace velloro
