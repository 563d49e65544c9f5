#pragma once

#include "CoreGraphics/CGImage.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace platform {

/// What the session's notification server says of itself.
struct NotificationServerInfo {
  std::string name = {};
  std::string vendor = {};
  std::string version = {};
  std::string specVersion = {};
  std::set<std::string, std::less<>> capabilities = {};
  /// Whether it holds notifications back at present, where it says so.
  std::optional<bool> isInhibited = {};

  bool operator==(const NotificationServerInfo&) const = default;
  [[nodiscard]] bool has(std::string_view capability) const {
    return capabilities.contains(capability);
  }
};

/// A notification as a program wants it; what a server can't show of it is left out.
struct DesktopNotification {
  struct Action {
    std::string key;  ///< Letters, digits, "." "_" and "-".
    std::string label;
  };
  struct Reply {
    std::string placeholder;
    std::string button;
  };

  std::string title;
  std::string body = {};                     ///< Plain text.
  std::vector<Action> actions = {};          ///< The most important first: some servers show three.
  std::optional<Action> defaultAction = {};  ///< Of a click on the notification itself.
  std::optional<Reply> reply = {};           ///< A line to type an answer into.
  std::shared_ptr<const CGImage> image = {};
  bool isUrgent = false;  ///< It may break through a wish not to be disturbed.
  bool isSilent = false;
  std::optional<std::string> soundFile = {};  ///< Absent for the server's own sound.
  std::string category = {};
  std::string tag = {};  ///< Notifications with the same one take the place of each other.
  bool stays = true;     ///< Until it is answered or closed; else for the server's usual time.
  std::uint32_t replaces = 0;  ///< The identifier of one that is shown.
};

/// The side length of an image in a notification.
inline constexpr std::size_t notificationImageSide = 96;

/// The arguments of `org.freedesktop.Notifications.Notify`.
struct NotifyCall {
  /// 8 bit RGBA with straight alpha, four bytes a pixel, rows without a gap.
  struct Pixels {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<std::uint8_t> bytes;

    bool operator==(const Pixels&) const = default;
  };
  using Hint = std::variant<bool, std::uint8_t, std::string, Pixels>;

  std::string applicationName;
  std::uint32_t replaces = 0;
  std::string icon;
  std::string summary;
  std::string body;
  std::vector<std::string> actions;  ///< Keys, each followed by its label.
  std::map<std::string, Hint> hints;
  std::int32_t expireTimeout = -1;

  bool operator==(const NotifyCall&) const = default;

  struct Sender {
    std::string name;
    std::string desktopEntry;  ///< The name of an installed ".desktop" file without its ending.
    std::string icon;
  };
  /// Follows what the server announces, and how it is known to differ:
  /// - The body is escaped where the server reads markup.
  /// - A line to reply into is offered only where it is announced, and never alone.
  /// - A single action is left out, since some servers take it for a click; dunst opens its menu
  ///   by the click that would be the default action.
  /// - Sounds are hinted at only where they are announced. The urgency is never low.
  [[nodiscard]] static NotifyCall of(const DesktopNotification& notification, const Sender& sender,
                                     const NotificationServerInfo& server);
};

/// "&" and angle brackets as entities.
///
///     markupEscaped("1 < 2 & 3");    // "1 &lt; 2 &amp; 3"
[[nodiscard]] std::string markupEscaped(std::string_view text);

/// Undoes the premultiplication.
[[nodiscard]] NotifyCall::Pixels straightPixels(const CGImage& image);

}  // namespace platform
