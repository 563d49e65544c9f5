#include "UserNotifications/UNNotificationAttachment.h"

#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Values/Try.h"
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
  (void)TRY(NSFileManager::size(url));
  const auto folder = attachmentFolder(notificationFolder());
  TRY(NSFileManager::createDirectory(folder));
  const auto copy = folder / (UUID::random().uuidString() + url.extension().string());
  TRY(NSFileManager::copyItem(url, copy));
  TRY(NSFileManager::makePrivate(copy));
  return UNNotificationAttachment{.identifier = std::move(identifier), .url = copy.string()};
}

}  // namespace platform
