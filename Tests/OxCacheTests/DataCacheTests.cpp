#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "OxCache/DataCache.h"

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using Reason = DataCache::Error::Reason;
using enum CacheStorageLocation;
using Numbers = std::vector<int>;

TEST(DataCacheKey, SaysAllThatTheValueDependsOn) {
  DataCacheKey inner("lp");
  inner.add("0.5", "prog");
  ImageCacheKey key("sig", {100, 50}, 2);
  key.add(inner, "hash");
  key.add(3, "or");
  key.add(CGSize{8, 9.6}, "box");
  key.add(CGSize{8, 10}, "box");
  EXPECT_EQ(key.text(),
            "100x50@2x,sig,hash=lp,prog=0.5,or=3,box=8x10,exact=8x9.5999999999999996,box=8x10");
  EXPECT_EQ(ImageCacheKey("sig", 3).text(), "3x,sig");
  EXPECT_EQ(DataCacheKey("").nsCacheKey(), 5381U);
  EXPECT_EQ(DataCacheKey("ab").nsCacheKey(), (5381U * 127 + 'a') * 127 + 'b');
  // Far enough for the top byte to be cleared on the way: computed with exact integers elsewhere.
  EXPECT_EQ(DataCacheKey("0123456789").nsCacheKey(), 5353151005932532746U);
}

struct DataCacheTest : ::testing::Test {
  std::optional<Reason> failure(const DataCache::Lookup& lookup) {
    try {
      (void)cache.item<Numbers>(lookup);
      return std::nullopt;
    } catch (const DataCache::Error& error) {
      return error.reason();
    }
  }

  std::vector<std::string> files() {
    return NSFileManager::contentsOfDirectory(NSFileManager::cachesDirectory() / "data-cache")
        .value_or(std::vector<std::string>{});
  }

  VirtualEnvironment environment;
  Date now;
  DataCache cache;
  DataCacheKey key{"numbers"};
  Numbers numbers{1, 2, 3};
};

TEST_F(DataCacheTest, FindsAValueWhereItWasPut) {
  cache.save(numbers, {.key = key, .location = memory, .now = now});
  EXPECT_TRUE(files().empty());
  EXPECT_EQ(cache.item<Numbers>({.key = key, .now = now}), numbers);
  EXPECT_EQ(failure({.key = key, .location = disk, .now = now}), Reason::keyNotFound);

  cache.save(Numbers{4}, {.key = key, .location = disk, .now = now});
  EXPECT_EQ(cache.item<Numbers>({.key = key, .location = disk, .now = now}), Numbers{4});
  EXPECT_EQ(cache.item<Numbers>({.key = key, .now = now}), numbers) << "memory comes first";
  cache.clearCache(memory);
  EXPECT_EQ(DataCache().item<Numbers>({.key = key, .now = now}), Numbers{4}) << "another process";
  EXPECT_EQ(cache.item<Numbers>({.key = key, .now = now}), Numbers{4});
  cache.clearCache(disk);
  EXPECT_EQ(cache.item<Numbers>({.key = key, .now = now}), Numbers{4}) << "kept when it was read";
  cache.remove(key);
  EXPECT_EQ(failure({.key = key, .now = now}), Reason::keyNotFound);
}

TEST_F(DataCacheTest, ExpiresByDateAndByAge) {
  cache.save(numbers, {.key = key, .expiredDate = now + 60, .now = now});
  EXPECT_EQ(failure({.key = key, .maxAge = 60, .now = now + 60}), std::nullopt);
  EXPECT_EQ(failure({.key = key, .maxAge = 59.5, .now = now + 60}), Reason::expired);
  EXPECT_EQ(failure({.key = key, .now = now + 60.5}), Reason::expired);
  EXPECT_EQ(failure({.key = key, .location = disk, .now = now + 60.5}), Reason::expired);
}

TEST_F(DataCacheTest, FailsForAReason) {
  cache.save(std::string("text"), {.key = key, .now = now});
  EXPECT_EQ(failure({.key = key, .now = now}), Reason::unableToDecode);
  const auto file = NSFileManager::cachesDirectory() / "data-cache" / files().at(0);
  ASSERT_TRUE(NSFileManager::write("{", file));
  EXPECT_EQ(failure({.key = key, .location = disk, .now = now}), Reason::unableToDecode);
  cache.isEnabled = false;
  EXPECT_EQ(failure({.key = key, .now = now}), Reason::cacheDisabled);
  EXPECT_THROW(cache.save(numbers, {.key = key, .now = now}), DataCache::Error);
}

TEST_F(DataCacheTest, FindsNoFileOfAnotherVersion) {
  cache.save(numbers, {.key = key, .now = now});
  cache.setVersion(2, false);
  EXPECT_EQ(failure({.key = key, .location = disk, .now = now}), Reason::keyNotFound);
  cache.save(numbers, {.key = key, .now = now});
  EXPECT_EQ(files().size(), 2U);
  DataCache next;
  next.setVersion(2, true);
  EXPECT_EQ(files().size(), 2U) << "the same version keeps its files";
  next.setVersion(3, true);
  EXPECT_TRUE(files().empty());
}

TEST_F(DataCacheTest, RemovesFilesBeyondItsLimit) {
  cache.trimmer.mostBytes = 1000;
  for (int number = 0; number < 100; ++number) {
    cache.save(numbers, {.key = DataCacheKey(std::to_string(number)), .now = now});
  }
  CacheTrimmer::waitUntilTrimmed();
  EXPECT_LT(files().size(), 30U);
  EXPECT_GT(files().size(), 9U);
}

}  // namespace
}  // namespace velloro
