#include "AppExtensions/ExtensionUtilities.h"

#include "Foundation/Files/NSFileManager.h"
#include "Settings/AppGroup.h"
#include "Settings/SettingsStorageLocal.h"

namespace velloro {

ExtensionUtilities& ExtensionUtilities::shared() {
  static auto* utilities = new ExtensionUtilities(SavedActivityRings::shared());
  return *utilities;
}

std::optional<std::filesystem::path> ExtensionUtilities::sharedContainer() {
  return NSFileManager::containerURLForSecurityApplicationGroupIdentifier(appGroupIdentifier);
}

std::optional<std::filesystem::path> ExtensionUtilities::iconCacheFile(const DataCacheKey& icon) {
  const auto container = sharedContainer();
  if (!container) return std::nullopt;
  return *container / "icon-cache-v4" / ("icon_" + std::to_string(icon.nsCacheKey()) + ".png");
}

}  // namespace velloro
