#include "Foundation/Values/NSCache.h"

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(NSCache, KeepsWhatWasUsedLastWithinItsLimits) {
  NSCache<int, std::string> cache({.totalCost = 10, .count = 3});
  const auto held = [&] {
    std::string values;
    for (int key = 0; key < 10; ++key) values += cache.object(key).value_or("");
    return values;
  };
  cache.setObject(1, "a", 2);
  cache.setObject(2, "b", 2);
  cache.setObject(3, "c", 2);
  EXPECT_EQ(cache.object(1), "a");
  cache.setObject(4, "d", 2);
  EXPECT_EQ(held(), "acd") << "one too many";
  cache.setObject(5, "e", 8);
  EXPECT_EQ(held(), "de") << "too costly together";
  cache.setObject(5, "f", 1);
  cache.setObject(6, "g", 7);
  EXPECT_EQ(held(), "dfg") << "the cost of what was replaced counts no more";
  cache.setObject(4, "h", 11);
  EXPECT_EQ(held(), "fg") << "never fits: it is not held, nor what it replaced";
  cache.removeObject(6);
  cache.setObject(7, "i", 9);
  EXPECT_EQ(held(), "fi");
  cache.setLimits({.count = 1});
  EXPECT_EQ(held(), "i");
  cache.setLimits({});
  for (int key = 0; key < 100; ++key) cache.setObject(key, "x", 1000);
  EXPECT_EQ(cache.count(), 100U);
  cache.removeAllObjects();
  EXPECT_EQ(held(), "");
}

TEST(NSCache, TakesCallsFromManyThreadsAndFromDestructorsOfItsValues) {
  struct Value;
  using Cache = NSCache<int, std::shared_ptr<Value>>;
  struct Value {
    Cache* cache;
    int key;
    ~Value() { (void)cache->object(key + 1); }
  };
  Cache cache({.totalCost = 50});
  const auto useIt = [&cache](int start) {
    for (int i = start; i < start + 500; ++i) {
      const int key = i * 7 % 40;
      const auto value = cache.object(key);
      EXPECT_TRUE(!value || (*value)->key == key);
      cache.setObject(key, std::make_shared<Value>(&cache, key), 5);
      EXPECT_LE(cache.count(), 10U);
    }
  };
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 4; ++thread) threads.emplace_back(useIt, thread);
  threads.clear();
  cache.removeAllObjects();
}

}  // namespace
}  // namespace platform
