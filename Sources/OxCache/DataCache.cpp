#include "OxCache/DataCache.h"

#include "Foundation/Files/NSFileManager.h"

#include <string>
#include <string_view>

namespace velloro {
namespace {

constexpr CacheFolder folder{
    .name = "data-cache", .extension = ".json", .versionKey = "_OxCache_Data_version"};

constexpr std::string_view messages[] = {"the cache is switched off", "it can't be stored",
                                         "there is none", "it is not what was asked for",
                                         "it has expired"};

std::string description(DataCache::Error::Reason reason, const DataCacheKey& key,
                        std::string_view details) {
  auto text = key.text().append(": ").append(messages[static_cast<int>(reason)]);
  if (!details.empty()) text.append(": ").append(details);
  return text;
}

}  // namespace

DataCache::Error::Error(Reason reason, const DataCacheKey& key, std::string_view details)
    : platform::Error("OxCache.DataCache", static_cast<int>(reason),
                      description(reason, key, details)) {}

DataCache::DataCache() : trimmer(folder, 32'000'000) {}

void DataCache::saveEncoded(const std::function<Data()>& encode, const Place& place) {
  if (!isEnabled) throw Error(Error::Reason::cacheDisabled, place.key);
  try {
    const auto item = std::make_shared<const CacheItem>(
        CacheItem{.savedDate = place.now, .expiredDate = place.expiredDate, .data = encode()});
    if (usesMemory(place.location)) {
      memoryCache_.setObject(place.key.nsCacheKey(), item, item->data.size());
    }
    if (usesDisk(place.location)) write(*item, place.key);
  } catch (const EncodingError& error) {
    throw Error(Error::Reason::storageError, place.key, error.localizedDescription());
  }
}

void DataCache::write(const CacheItem& item, const DataCacheKey& key) {
  const std::string json = JSONEncoder{}.encode(item);
  const auto written = NSFileManager::write(json, folder.file(version_, key), NewItemAccess::owner,
                                            NSFileManager::Durability::process);
  if (!written) {
    throw Error(Error::Reason::storageError, key, written.error()->localizedDescription());
  }
  trimmer.fileWasAdded(json.size());
}

DataCache::Item DataCache::find(const Lookup& lookup) {
  if (!isEnabled) throw Error(Error::Reason::cacheDisabled, lookup.key);
  const Item item = stored(lookup);
  if (!item) throw Error(Error::Reason::keyNotFound, lookup.key);
  const bool isPast = item->expiredDate && *item->expiredDate < lookup.now;
  const bool isOld =
      lookup.maxAge && lookup.now.timeIntervalSince(item->savedDate) > *lookup.maxAge;
  if (isPast || isOld) throw Error(Error::Reason::expired, lookup.key);
  return item;
}

DataCache::Item DataCache::stored(const Lookup& lookup) {
  const std::uint64_t number = lookup.key.nsCacheKey();
  if (usesMemory(lookup.location)) {
    if (const auto held = memoryCache_.object(number)) return *held;
  }
  if (!usesDisk(lookup.location)) return nullptr;
  Item item = read(lookup.key);
  if (item && lookup.location == CacheStorageLocation::automatic) {
    memoryCache_.setObject(number, item, item->data.size());
  }
  return item;
}

DataCache::Item DataCache::read(const DataCacheKey& key) const {
  const auto json = NSFileManager::contents(folder.file(version_, key));
  if (!json) return nullptr;
  try {
    return std::make_shared<const CacheItem>(JSONDecoder{}.decode<CacheItem>(*json));
  } catch (const DecodingError& error) {
    throw Error(Error::Reason::unableToDecode, key, error.localizedDescription());
  }
}

void DataCache::remove(const DataCacheKey& key, CacheStorageLocation location) {
  if (usesMemory(location)) memoryCache_.removeObject(key.nsCacheKey());
  // A file that isn't there is as good as removed.
  if (usesDisk(location)) (void)NSFileManager::removeItem(folder.file(version_, key));
}

void DataCache::clearCache(CacheStorageLocation location) {
  if (usesMemory(location)) memoryCache_.removeAllObjects();
  if (usesDisk(location)) folder.removeAllFiles();
}

void DataCache::setVersion(int version, bool shouldClearOldFiles) {
  folder.setVersion(version, shouldClearOldFiles);
  version_ = version;
  memoryCache_.removeAllObjects();
}

}  // namespace velloro
