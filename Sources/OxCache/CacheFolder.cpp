#include "OxCache/CacheFolder.h"

#include "Foundation/Dispatch/DispatchQueue.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Files/NSUserDefaults.h"
#include "OxLog/Log.h"

#include <algorithm>
#include <string>
#include <system_error>
#include <vector>

namespace velloro {
namespace {

/// Never destroyed: it may be at work until the very end.
const DispatchQueue& trimming() {
  static const auto* queue = new DispatchQueue("velloro.cache.trim", QualityOfService::utility);
  return *queue;
}

/// Files that go meanwhile are no failure.
void trim(const std::filesystem::path& folder, std::uint64_t mostBytes) {
  namespace fs = std::filesystem;
  struct File {
    fs::file_time_type time;
    fs::path path;
    std::uint64_t bytes;
  };
  std::vector<File> files;
  std::uint64_t sum = 0;
  std::error_code gone;
  for (fs::directory_iterator item(folder, gone), end; !gone && item != end; item.increment(gone)) {
    std::error_code lost;
    const File file{item->last_write_time(lost), item->path(), item->file_size(lost)};
    if (lost) continue;
    files.push_back(file);
    sum += file.bytes;
  }
  std::ranges::sort(files, {}, &File::time);
  for (const File& file : files) {
    if (sum <= mostBytes) return;
    fs::remove(file.path, gone);
    sum -= file.bytes;
  }
}

}  // namespace

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
  if (defaults.integerForKey(versionKey) != version) defaults.setObject(version, versionKey);
}

void CacheTrimmer::fileWasAdded(std::uint64_t bytes) {
  const std::uint64_t left = bytesUntilTrimming_;
  if (bytes < left) {
    bytesUntilTrimming_ = left - bytes;
    return;
  }
  const std::uint64_t most = mostBytes;
  bytesUntilTrimming_ = most / 16;
  trimming().async([path = folder_.url(), most] { trim(path, most); });
}

void CacheTrimmer::waitUntilTrimmed() {
  trimming().sync([] {});
}

}  // namespace velloro
