#pragma once

#include "Foundation/Coding/Coding.h"
#include "Foundation/Values/Error.h"

#include <filesystem>
#include <string>

namespace platform {

/// The folder in which the current environment's program keeps its notifications: that of its
/// bundle identifier among the group containers ("standard" where it has none).
[[nodiscard]] std::filesystem::path notificationFolder();

/// A file that a notification shows, such as an image.
struct UNNotificationAttachment {
  std::string identifier;
  std::string url;  ///< The path of the copy.

  /// Copies the file into the program's `notificationFolder`, so that the original may go. Fails
  /// with a `PosixError` when it is missing, is no file, or can't be copied. The copy goes when no
  /// pending and no delivered request of the notification centre has it any more.
  [[nodiscard]] static Result<UNNotificationAttachment> attachmentWithIdentifier(
      std::string identifier, const std::filesystem::path& url);

  bool operator==(const UNNotificationAttachment&) const = default;
  static constexpr auto codingKeys = keys(key("identifier", &UNNotificationAttachment::identifier),
                                          key("url", &UNNotificationAttachment::url));
};

/// Where the copies lie in a `notificationFolder`.
[[nodiscard]] inline std::filesystem::path attachmentFolder(const std::filesystem::path& folder) {
  return folder / "attachments";
}

}  // namespace platform
