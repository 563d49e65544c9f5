#include "OxCache/CacheFolder.h"

#include "Foundation/NSFileManager.h"
#include "Foundation/NSUserDefaults.h"
#include "OxLog/Log.h"

#include <string>

namespace velloro {

std::filesystem::path CacheFolder::url() const {
  auto folder = NSFileManager::cachesDirectory() / name;
  const auto made = NSFileManager::createDirectory(folder);
  if (!made) Log::cache.error(made.error());
  return folder;
}

std::filesystem::path CacheFolder::file(int version, const DataCacheKey& key) const {
  return url() /
         ("v" + std::to_string(version) + "-" + std::to_string(key.nsCacheKey())).append(extension);
}

void CacheFolder::removeAllFiles() const {
  const auto folder = url();
  const auto names = NSFileManager::contentsOfDirectory(folder);
  if (!names) return Log::cache.error(names.error());
  for (const auto& file : *names) {
    const auto removed = NSFileManager::removeItem(folder / file);
    if (!removed) Log::cache.error(removed.error());
  }
}

void CacheFolder::setVersion(int version, bool shouldClearOldFiles) const {
  auto defaults = NSUserDefaults::standardUserDefaults();
  if (defaults.integerForKey(versionKey) < version && shouldClearOldFiles) removeAllFiles();
  defaults.setObject(version, versionKey);
}

}  // namespace velloro
