#include "Foundation/Files/NSUbiquitousKeyValueStore.h"

#include <utility>

namespace platform {

NSUbiquitousKeyValueStore NSUbiquitousKeyValueStore::defaultStore() {
  return NSUbiquitousKeyValueStore(
      NSUserDefaults::initWithSuiteName("NSUbiquitousKeyValueStore").value());
}

void NSUbiquitousKeyValueStore::setString(std::optional<std::string> value, std::string_view key) {
  values_.setObject(value ? PropertyList(*std::move(value)) : PropertyList(), key);
}

void NSUbiquitousKeyValueStore::setData(std::optional<Data> value, std::string_view key) {
  values_.setObject(value ? PropertyList(*std::move(value)) : PropertyList(), key);
}

}  // namespace platform
