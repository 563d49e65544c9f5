#pragma once

#include "UserNotifications/UNNotificationContentExtension.h"

#include <functional>
#include <memory>
#include <string>

namespace platform {

/// Shows one expanded notification at a time by way of a content extension, and takes its answers.
///
///     UNNotificationContentExtensionHost host({.makeController = [] { return nullptr; },
///                                              .forward = [](const auto& response) {}});
///     UNNotification notification;
///     host.present(notification);
///     host.respond("NotificationManager.Action.Snooze");
///         // handed to `forward` when the extension says so
///
/// The extension is made for the first notification and lives until it is dismissed; a further
/// notification goes to the same one. May be called from any thread; everything happens on the main
/// queue, in the order of the calls. When the host goes, nothing more is called.
class UNNotificationContentExtensionHost {
 public:
  struct Handlers {
    std::function<std::shared_ptr<UNNotificationContentExtension>()> makeController;
    /// The program's part: a response whose action is to be performed. May be empty.
    std::function<void(const UNNotificationResponse&)> forward = {};
    /// Hears of each answer, before `forward`. May be empty.
    std::function<void(UNNotificationContentExtensionResponseOption)> didAnswer = {};
  };

  explicit UNNotificationContentExtensionHost(Handlers handlers);

  void present(UNNotification notification);
  /// No effect while nothing is shown. Of each response the first answer counts.
  void respond(std::string actionIdentifier);
  /// What shows the notification, to draw it and to ask for its size; in the handlers it is still
  /// there. Null while nothing is shown. On the main thread.
  [[nodiscard]] std::shared_ptr<UNNotificationContentExtension> controller() const;

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace platform
