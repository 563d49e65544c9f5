#include "OxCache/ImageCache.h"

#include "CoreGraphics/CGImage.h"
#include "Foundation/Files/NSFileManager.h"
#include "OxLog/Log.h"

#include <span>
#include <system_error>

namespace velloro {
namespace {

constexpr CacheFolder folder{
    .name = "image-cache", .extension = ".png", .versionKey = "_OxCache_Image_version"};

std::size_t cost(const UIImage& image) {
  return image.cgImage->pixels().size_bytes();
}

}  // namespace

ImageCache::ImageCache() : trimmer(folder, 64'000'000) {}

ImageCache& ImageCache::shared() {
  static auto* cache = new ImageCache;  // background work may draw until the very end
  return *cache;
}

std::optional<UIImage> ImageCache::image(const ImageCacheKey& key, bool useMemoryCache) {
  const CacheMode mode = cacheMode;
  const bool inMemory = usesMemory(mode) && useMemoryCache;
  const std::uint64_t number = key.nsCacheKey();
  auto found = inMemory ? staticMemoryCache.object(number) : std::nullopt;
  if (!found && usesDisk(mode)) {
    found = read(key);
    if (found && inMemory) staticMemoryCache.setObject(number, *found, cost(*found));
  }
  note(found ? logCacheHits : logCacheMisses, found ? "Hit: " : "Miss: ", key);
  return found;
}

std::optional<UIImage> ImageCache::read(const ImageCacheKey& key) const {
  const auto bytes = NSFileManager::contents(imageUrl(key));
  if (!bytes) return std::nullopt;
  const auto image = CGImage::fromPNG(std::as_bytes(std::span(*bytes)));
  if (!image) {
    Log::cache.error(image.error());
    return std::nullopt;
  }
  return UIImage{.cgImage = *image, .scale = key.scale()};
}

void ImageCache::save(const UIImage& image, const ImageCacheKey& key, bool useMemoryCache) {
  const CacheMode mode = cacheMode;
  if (mode == CacheMode::none) return;
  if (image.cgImage && usesMemory(mode) && useMemoryCache) {
    staticMemoryCache.setObject(key.nsCacheKey(), image, cost(image));
  }
  if (!usesDisk(mode)) return;
  const auto png = image.cgImage ? image.cgImage->pngData() : std::nullopt;
  if (!png) return Log::cache.error([] { return "Unable to get PNG data"; });
  const auto written = write(png->text(), key);
  if (!written && logWriteErrors) Log::cache.error(written.error());
}

Result<void> ImageCache::write(std::string_view png, const ImageCacheKey& key) {
  // Saving must not wait for the disk: a file that a power cut damages is drawn again.
  auto written = NSFileManager::write(png, imageUrl(key), NewItemAccess::owner,
                                      NSFileManager::Durability::process);
  if (written) trimmer.fileWasAdded(png.size());
  return written;
}

std::filesystem::path ImageCache::imageUrl(const ImageCacheKey& key) const {
  return folder.file(version_, key);
}

void ImageCache::copyToCache(const std::filesystem::path& imageUrl, const ImageCacheKey& key) {
  const auto bytes = NSFileManager::contents(imageUrl);
  const auto written = bytes ? write(*bytes, key) : Result<void>(std::unexpected(bytes.error()));
  if (!written && logWriteErrors) Log::cache.error(written.error());
  forget(key);
}

void ImageCache::moveToCache(const std::filesystem::path& url, const ImageCacheKey& key) {
  const auto own = imageUrl(key);
  auto moved = NSFileManager::replaceItem(own, url);
  if (moved) moved = NSFileManager::makePrivate(own);
  if (moved) {
    std::error_code gone;
    // Trimming goes by the time at which a file came into the cache.
    std::filesystem::last_write_time(own, std::filesystem::file_time_type::clock::now(), gone);
    const std::uint64_t bytes = std::filesystem::file_size(own, gone);
    if (!gone) trimmer.fileWasAdded(bytes);
  }
  if (!moved && logWriteErrors) Log::cache.error(moved.error());
  forget(key);
}

void ImageCache::forget(const ImageCacheKey& key) {
  staticMemoryCache.removeObject(key.nsCacheKey());
}

void ImageCache::clearDiskCache() {
  folder.removeAllFiles();
}

void ImageCache::setVersion(int version, bool shouldClearOldFiles) {
  folder.setVersion(version, shouldClearOldFiles);
  version_ = version;
  staticMemoryCache.removeAllObjects();
}

void ImageCache::note(const std::atomic<bool>& isWanted, const char* what,
                      const ImageCacheKey& key) const {
  if (isWanted) Log::cache.debug([&] { return what + key.debugDescription(); });
}

}  // namespace velloro
