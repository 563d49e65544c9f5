#include "Foundation/NSCache.h"

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace platform {
namespace {

using Cache = NSCache<int, std::string>;

std::string held(Cache& cache) {
  std::string keys;
  for (int key = 0; key < 10; ++key) {
    if (const auto value = cache.object(key)) keys += *value;
  }
  return keys;
}

TEST(NSCache, KeepsWhatWasUsedLastWithinItsLimits) {
  Cache cache({.totalCost = 10, .count = 3});
  cache.setObject(1, "a", 2);
  cache.setObject(2, "b", 2);
  cache.setObject(3, "c", 2);
  EXPECT_EQ(cache.object(1), "a");
  cache.setObject(4, "d", 2);
  EXPECT_EQ(held(cache), "acd") << "one too many";
  cache.setObject(5, "e", 8);
  EXPECT_EQ(held(cache), "de") << "too costly together";
  cache.setObject(5, "f", 1);
  cache.setObject(6, "g", 7);
  EXPECT_EQ(held(cache), "dfg") << "the cost of what was replaced counts no more";
  cache.setObject(4, "h", 11);
  EXPECT_EQ(held(cache), "fg") << "never fits: it is not held, nor what it replaced";
  cache.removeObject(6);
  cache.removeObject(6);
  cache.setObject(7, "i", 9);
  EXPECT_EQ(held(cache), "fi");
  cache.setLimits({.count = 1});
  EXPECT_EQ(held(cache), "i");
  cache.setLimits({});
  for (int key = 0; key < 100; ++key) cache.setObject(key, "x", 1000);
  EXPECT_EQ(cache.count(), 100U);
  cache.removeAllObjects();
  EXPECT_EQ(cache.count(), 0U);
}

TEST(NSCache, TakesCallsFromManyThreadsAndFromDestructorsOfItsValues) {
  struct Value;
  using Values = NSCache<int, std::shared_ptr<Value>>;
  struct Value {
    Values* cache;
    int key;
    ~Value() { (void)cache->object(key + 1); }
  };
  Values cache({.totalCost = 50});
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&cache, thread] {
      for (int i = 0; i < 500; ++i) {
        const int key = (i * 7 + thread) % 40;
        const auto value = cache.object(key);
        EXPECT_TRUE(!value || (*value)->key == key);
        if (i % 50 == 0) cache.removeObject(key);
        cache.setObject(key, std::make_shared<Value>(&cache, key), 5);
        EXPECT_LE(cache.count(), 10U);
      }
    });
  }
  threads.clear();
  cache.removeAllObjects();
}

}  // namespace
}  // namespace platform
