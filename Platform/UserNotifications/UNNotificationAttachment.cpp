#include "UserNotifications/UNNotificationAttachment.h"

#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Values/UUID.h"

namespace platform {

std::filesystem::path notificationFolder() {
  const Environment& environment = Environment::current();
  const std::string& identifier = environment.bundle().identifier;
  const bool isUsable = NSFileManager::isFileName(identifier);
  return environment.directories().groupContainers / (isUsable ? identifier : "standard");
}

Result<UNNotificationAttachment> UNNotificationAttachment::attachmentWithIdentifier(
    std::string identifier, const std::filesystem::path& url) {
  // A folder could be copied as well, but has no size.
  if (auto size = NSFileManager::size(url); !size) return std::unexpected(size.error());
  const auto folder = attachmentFolder(notificationFolder());
  if (auto made = NSFileManager::createDirectory(folder); !made) {
    return std::unexpected(made.error());
  }
  const auto copy = folder / (UUID::random().uuidString() + url.extension().string());
  if (auto copied = NSFileManager::copyItem(url, copy); !copied) {
    return std::unexpected(copied.error());
  }
  if (auto kept = NSFileManager::makePrivate(copy); !kept) return std::unexpected(kept.error());
  return UNNotificationAttachment{.identifier = std::move(identifier), .url = copy.string()};
}

}  // namespace platform
