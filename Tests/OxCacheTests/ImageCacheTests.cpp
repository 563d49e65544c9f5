#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "OxCache/ImageCache.h"
#include "Support/Processes.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

namespace velloro {
namespace {

constexpr std::uint32_t red = 0xFFFF0000;
constexpr std::uint32_t blue = 0xFF0000FF;

UIImage plain(std::uint32_t pixel, std::size_t side = 8) {
  const std::vector<std::uint32_t> pixels(side * side, pixel);
  return {.cgImage = std::make_shared<const CGImage>(side, side, pixels), .scale = 2};
}

struct ImageCacheTest : ::testing::Test {
  /// The colour of the image that a cache finds.
  static std::optional<std::uint32_t> found(ImageCache& cache, const ImageCacheKey& key,
                                            bool useMemoryCache = true) {
    const auto image = cache.image(key, useMemoryCache);
    return image ? std::optional(image->cgImage->pixel(0, 0)) : std::nullopt;
  }
  std::optional<std::uint32_t> foundByAnotherProcess() const {
    ImageCache other;
    return found(other, key);
  }

  VirtualEnvironment environment;
  ImageCache cache;
  ImageCacheKey key{"ring", {4, 4}, 2};
};

TEST_F(ImageCacheTest, KeepsImagesWhereItsModeSays) {
  for (const auto& [mode, inMemory, onDisk] :
       {std::tuple(CacheMode::none, false, false), std::tuple(CacheMode::memory, true, false),
        std::tuple(CacheMode::disk, false, true),
        std::tuple(CacheMode::diskAndMemory, true, true)}) {
    ImageCache fresh;
    fresh.cacheMode = mode;
    fresh.clearDiskCache();
    fresh.save(plain(red), key, true);
    EXPECT_EQ(foundByAnotherProcess().has_value(), onDisk) << static_cast<int>(mode);
    fresh.clearDiskCache();
    EXPECT_EQ(found(fresh, key).has_value(), inMemory) << static_cast<int>(mode);
    EXPECT_EQ(found(fresh, key, false), std::nullopt) << "memory was not to be used";
  }
}

TEST_F(ImageCacheTest, KeepsInMemoryWhatItReadFromAFile) {
  ImageCache().save(plain(red), key, false);
  EXPECT_EQ(found(cache, key), red);
  EXPECT_EQ(cache.image(key, true)->scale, 2);
  cache.clearDiskCache();
  EXPECT_EQ(found(cache, key), red);
  cache.save(plain(red), key, true);
  const auto file = cache.imageUrl(key);
  cache.setVersion(3, false);
  EXPECT_EQ(found(cache, key), std::nullopt);
  EXPECT_TRUE(NSFileManager::exists(file));
}

TEST_F(ImageCacheTest, TwoSizesOrScalesNeverShareAFile) {
  std::set<std::filesystem::path> files;
  const ImageCacheKey keys[] = {{"ring", {40, 50}, 2},
                                {"ring", {40.4, 50}, 2},
                                {"ring", {40, 50.4}, 2},
                                {"ring", {40, 50}, 1.5},
                                {"ring", {40, 50}, 2.4},
                                {"ring", {40.25, 50}, 2},
                                {"ring", 2},
                                {"ring", 1.75}};
  for (const ImageCacheKey& sized : keys) {
    EXPECT_TRUE(files.insert(cache.imageUrl(sized)).second) << sized.text();
  }
  EXPECT_EQ(keys[0].text(), "40x50@2x,ring") << "whole ones keep their names";
}

TEST_F(ImageCacheTest, RemovesTheOldestFilesBeyondItsLimit) {
  const auto keyOf = [](int number) { return ImageCacheKey(std::to_string(number), 1); };
  std::uintmax_t bytes = 0;
  for (int number = 0; number < 8; ++number) {
    cache.save(plain(red), keyOf(number), false);
    const auto file = cache.imageUrl(keyOf(number));
    bytes = std::filesystem::file_size(file);
    const auto age = std::chrono::hours(number % 2 == 0 ? number : 20 + number);
    std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() - age);
  }
  const auto moved = cache.imageUrl(keyOf(9));
  std::filesystem::rename(cache.imageUrl(keyOf(7)), moved);
  ImageCache other;
  other.trimmer.mostBytes = bytes * 4;
  other.moveToCache(moved, keyOf(8));  // an old file that is new to the cache
  CacheTrimmer::waitUntilTrimmed();
  std::string kept;
  for (int number = 0; number < 9; ++number) {
    if (found(other, keyOf(number), false)) kept += std::to_string(number);
  }
  EXPECT_EQ(kept, "0248");
}

TEST_F(ImageCacheTest, TakesFilesInThePlaceOfWhatItHas) {
  const auto file = environment.directories().temporary / "made.png";
  ASSERT_TRUE(NSFileManager::write(plain(blue).cgImage->pngData()->text(), file));
  cache.save(plain(red), key, true);
  cache.copyToCache(file, key);
  EXPECT_EQ(found(cache, key), blue);
  EXPECT_TRUE(NSFileManager::exists(file));
  cache.save(plain(red), key, true);
  cache.moveToCache(file, key);
  EXPECT_EQ(found(cache, key), blue);
  EXPECT_FALSE(NSFileManager::exists(file));
  cache.moveToCache(file, key);  // a file that isn't there changes nothing
  EXPECT_EQ(foundByAnotherProcess(), blue);
}

TEST_F(ImageCacheTest, ADamagedFileIsAMiss) {
  ASSERT_TRUE(NSFileManager::write("\x89PNG", cache.imageUrl(key)));
  EXPECT_EQ(found(cache, key), std::nullopt);
  cache.save(plain(red), key, true);
  EXPECT_EQ(foundByAnotherProcess(), red);
}

TEST_F(ImageCacheTest, ProcessesThatWriteOneKeyNeverLeaveATornFile) {
  constexpr std::size_t side = 200;
  workInProcesses(3, 1, [&](int worker) {
    for (int round = 0; round < 40; ++round) {
      ImageCache mine;
      mine.save(plain(0xFF000000U | static_cast<std::uint32_t>(worker * 100 + round), side), key,
                false);
      const auto image = mine.image(key, false);
      ASSERT_TRUE(image);
      const auto pixels = image->cgImage->pixels();
      ASSERT_EQ(pixels.size(), side * side);
      for (const std::uint32_t pixel : pixels) ASSERT_EQ(pixel, pixels[0]);
    }
  });
}

}  // namespace
}  // namespace velloro
