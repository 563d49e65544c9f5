#include "Desktop/NotifyCall.h"

#include <algorithm>

namespace platform {
namespace {

std::uint8_t straight(std::uint32_t component, std::uint32_t alpha) {
  if (alpha == 0) return 0;
  return static_cast<std::uint8_t>(
      std::min<std::uint32_t>(255, (component * 255 + alpha / 2) / alpha));
}

void addActions(NotifyCall& call, const DesktopNotification& notification,
                const NotificationServerInfo& server) {
  const auto add = [&](const std::string& key, const std::string& label) {
    call.actions.push_back(key);
    call.actions.push_back(label);
  };
  // Sent even where "actions" is not announced: some servers take it back while the user does not
  // want to be disturbed, and show the buttons later.
  if (notification.actions.size() < 2) return;
  for (const auto& action : notification.actions) add(action.key, action.label);
  if (notification.reply && server.has("inline-reply")) {
    add("inline-reply", notification.reply->button);
    call.hints["x-kde-reply-placeholder-text"] = notification.reply->placeholder;
    call.hints["x-kde-reply-submit-button-text"] = notification.reply->button;
  }
  if (notification.defaultAction && server.name != "dunst") {
    add("default", notification.defaultAction->label);
  }
}

void addSound(NotifyCall& call, const DesktopNotification& notification,
              const NotificationServerInfo& server) {
  if (!server.has("sound")) return;
  if (notification.isSilent) {
    call.hints["suppress-sound"] = true;
  } else if (notification.soundFile) {
    call.hints["sound-file"] = *notification.soundFile;
  } else {
    call.hints["sound-name"] = std::string("message-new-instant");
  }
}

}  // namespace

std::string markupEscaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

NotifyCall::Pixels straightPixels(const CGImage& image) {
  NotifyCall::Pixels pixels{.width = static_cast<std::int32_t>(image.width()),
                            .height = static_cast<std::int32_t>(image.height()),
                            .bytes = {}};
  pixels.bytes.reserve(image.pixels().size() * 4);
  for (const std::uint32_t pixel : image.pixels()) {
    const std::uint32_t alpha = pixel >> 24;
    for (const int shift : {16, 8, 0}) {
      pixels.bytes.push_back(straight((pixel >> shift) & 0xFF, alpha));
    }
    pixels.bytes.push_back(static_cast<std::uint8_t>(alpha));
  }
  return pixels;
}

NotifyCall NotifyCall::of(const DesktopNotification& notification, const Sender& sender,
                          const NotificationServerInfo& server) {
  constexpr std::uint8_t normal = 1;
  constexpr std::uint8_t critical = 2;
  NotifyCall call{
      .applicationName = sender.name,
      .replaces = notification.replaces,
      .icon = sender.icon,
      .summary = notification.title,
      .body = server.has("body-markup") ? markupEscaped(notification.body) : notification.body,
      .actions = {},
      .hints = {},
      .expireTimeout = notification.stays ? 0 : -1};
  // Some servers show nothing for an empty text.
  if (call.summary.empty()) call.summary = sender.name;
  addActions(call, notification, server);
  addSound(call, notification, server);
  call.hints["urgency"] = notification.isUrgent ? critical : normal;
  call.hints["desktop-entry"] = sender.desktopEntry;
  call.hints["resident"] = true;
  if (!notification.category.empty()) call.hints["category"] = notification.category;
  if (notification.image) call.hints["image-data"] = straightPixels(*notification.image);
  if (!notification.tag.empty()) {
    call.hints["x-dunst-stack-tag"] = notification.tag;
    call.hints["x-canonical-private-synchronous"] = notification.tag;
  }
  return call;
}

}  // namespace platform
