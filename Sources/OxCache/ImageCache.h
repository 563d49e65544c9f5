#pragma once

#include "Foundation/Values/Error.h"
#include "Foundation/Values/NSCache.h"
#include "OxCache/CacheFolder.h"
#include "OxCache/CacheMode.h"
#include "OxCache/DataCacheKey.h"
#include "UIKit/UIImage.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

namespace velloro {

/// Keeps images that can be drawn again, in memory and as PNG files, where later processes find
/// them. A miss is an absent image; what goes wrong is logged. Safe from any thread.
///
///     const ImageCacheKey key("dot", {1, 1}, 1);
///     ImageCache::shared().image(key, true);    // absent: it is to be drawn, and then saved
///     ImageCache::shared().save(UIImage{}, key, true);
class ImageCache {
 public:
  using MemoryCache = NSCache<std::uint64_t, UIImage>;

  [[nodiscard]] static ImageCache& shared();

  ImageCache();

  /// \param useMemoryCache Whether it may come from memory, and stay there.
  [[nodiscard]] std::optional<UIImage> image(const ImageCacheKey& key, bool useMemoryCache);
  void save(const UIImage& image, const ImageCacheKey& key, bool useMemoryCache);

  /// Where the image's file is, or would be.
  [[nodiscard]] std::filesystem::path imageUrl(const ImageCacheKey& key) const;
  /// Makes a file the image of a key, in the place of one that is there.
  void copyToCache(const std::filesystem::path& imageUrl, const ImageCacheKey& key);
  void moveToCache(const std::filesystem::path& url, const ImageCacheKey& key);

  void clearDiskCache();
  /// Another one whenever images come out differently: files of another version are not found.
  void setVersion(int version, bool shouldClearOldFiles);
  [[nodiscard]] int version() const { return version_; }
  std::atomic<CacheMode> cacheMode = CacheMode::diskAndMemory;
  std::atomic<bool> logCacheHits = false;
  std::atomic<bool> logCacheMisses = false;
  std::atomic<bool> logWriteErrors = true;
  /// Bounds the files.
  CacheTrimmer trimmer;

  /// Costs are bytes.
  MemoryCache staticMemoryCache{{.totalCost = 32'000'000}};
  /// The images of a running animation, apart, so that they can go together.
  MemoryCache animationMemoryCache{{.totalCost = 64'000'000}};

 private:
  [[nodiscard]] std::optional<UIImage> read(const ImageCacheKey& key) const;
  [[nodiscard]] Result<void> write(std::string_view png, const ImageCacheKey& key);
  void forget(const ImageCacheKey& key);
  void note(const std::atomic<bool>& isWanted, const char* what, const ImageCacheKey& key) const;

  std::atomic<int> version_ = 0;
};

}  // namespace velloro
