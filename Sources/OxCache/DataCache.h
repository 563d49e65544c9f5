#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Coding/JSON.h"
#include "Foundation/Time/Date.h"
#include "Foundation/Values/Data.h"
#include "Foundation/Values/Error.h"
#include "Foundation/Values/NSCache.h"
#include "OxCache/CacheFolder.h"
#include "OxCache/CacheMode.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace velloro {

/// Keeps values that can be had again, in memory and as JSON files, where later processes find
/// them: the newest 32 MB. Safe from any thread.
///
///     DataCache cache;
///     const DataCacheKey key("steps");
///     cache.save(std::vector{5, 7}, {.key = key, .now = now});
///     cache.item<std::vector<int>>({.key = key, .maxAge = 3600, .now = now}).front();    // 5
///     cache.item<std::vector<int>>({.key = key, .maxAge = 3600, .now = now + 7200});
///         // throws DataCache::Error; so does every other miss
class DataCache {
 public:
  class Error : public platform::Error {
   public:
    enum class Reason { cacheDisabled, storageError, keyNotFound, unableToDecode, expired };

    Error(Reason reason, const DataCacheKey& key, std::string_view details = {});

    [[nodiscard]] Reason reason() const { return static_cast<Reason>(code()); }
  };

  /// What is kept of a value, in memory and in its file.
  struct CacheItem {
    Date savedDate;
    std::optional<Date> expiredDate;
    Data data;  ///< The value's JSON.

    bool operator==(const CacheItem&) const = default;
    static constexpr auto codingKeys =
        keys(key("savedDate", &CacheItem::savedDate), key("expiredDate", &CacheItem::expiredDate),
             key("data", &CacheItem::data));
  };

  struct Place {
    const DataCacheKey& key;
    std::optional<Date> expiredDate = {};  ///< From then on it isn't found any more.
    CacheStorageLocation location = CacheStorageLocation::automatic;
    Date now;  ///< From which its age counts.
  };

  struct Lookup {
    const DataCacheKey& key;
    std::optional<TimeInterval> maxAge = {};  ///< Seconds since it was saved.
    CacheStorageLocation location = CacheStorageLocation::automatic;
    Date now;  ///< At which it must not have expired.
  };

  DataCache();

  /// \throws Error `cacheDisabled`; `storageError` when the value has no JSON or the file can't be
  /// written.
  template <typename T>
  void save(const T& item, const Place& place) {
    saveEncoded([&] { return Data(JSONEncoder{}.encode(item)); }, place);
  }

  /// \throws Error `cacheDisabled`, `keyNotFound`, `expired`; `unableToDecode` when it is no `T`.
  template <typename T>
  [[nodiscard]] T item(const Lookup& lookup) {
    const auto found = find(lookup);
    try {
      return JSONDecoder{}.decode<T>(found->data.text());
    } catch (const DecodingError& error) {
      throw Error(Error::Reason::unableToDecode, lookup.key, error.localizedDescription());
    }
  }

  void remove(const DataCacheKey& key,
              CacheStorageLocation location = CacheStorageLocation::automatic);
  void clearCache(CacheStorageLocation location = CacheStorageLocation::automatic);

  /// To be raised whenever the values' form changes: files of another version are not found.
  void setVersion(int version, bool shouldClearOldFiles);

  /// When off, every call fails with `cacheDisabled`.
  std::atomic<bool> isEnabled = true;
  /// Bounds the files.
  CacheTrimmer trimmer;

 private:
  using Item = std::shared_ptr<const CacheItem>;

  void saveEncoded(const std::function<Data()>& encode, const Place& place);
  void write(const CacheItem& item, const DataCacheKey& key);
  [[nodiscard]] Item find(const Lookup& lookup);
  [[nodiscard]] Item stored(const Lookup& lookup);
  [[nodiscard]] Item read(const DataCacheKey& key) const;

  NSCache<std::uint64_t, Item> memoryCache_{{.totalCost = 8'000'000}};
  std::atomic<int> version_ = 0;
};

}  // namespace velloro
