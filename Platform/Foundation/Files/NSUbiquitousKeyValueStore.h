#pragma once

#include "Foundation/Files/NSUserDefaults.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// Small values by key that all of a person's devices share. On this machine they lie in one file
/// beside the preferences, `NSUbiquitousKeyValueStore.json`, which any tool that carries files
/// between machines may carry. The rules of `NSUserDefaults` hold, for reading and for writing.
///
///     auto store = NSUbiquitousKeyValueStore::defaultStore();
///     store.setString("blue", "color");
///     store.stringForKey("color");       // "blue"
///     store.longLongForKey("unknown");   // 0
class NSUbiquitousKeyValueStore {
 public:
  /// A handle; all are the same store.
  [[nodiscard]] static NSUbiquitousKeyValueStore defaultStore();

  [[nodiscard]] std::int64_t longLongForKey(std::string_view key) const {
    return values_.integerForKey(key);
  }
  [[nodiscard]] bool boolForKey(std::string_view key) const { return values_.boolForKey(key); }
  [[nodiscard]] double doubleForKey(std::string_view key) const {
    return values_.doubleForKey(key);
  }
  [[nodiscard]] std::optional<std::string> stringForKey(std::string_view key) const {
    return values_.stringForKey(key);
  }
  [[nodiscard]] std::optional<Data> dataForKey(std::string_view key) const {
    return values_.dataForKey(key);
  }

  void setLongLong(std::int64_t value, std::string_view key) { values_.setObject(value, key); }
  void setBool(bool value, std::string_view key) { values_.setObject(value, key); }
  void setDouble(double value, std::string_view key) { values_.setObject(value, key); }
  /// Absent removes the key; so it does in `setData`.
  void setString(std::optional<std::string> value, std::string_view key);
  void setData(std::optional<Data> value, std::string_view key);
  void removeObjectForKey(std::string_view key) { values_.removeObjectForKey(key); }

 private:
  explicit NSUbiquitousKeyValueStore(NSUserDefaults values) : values_(std::move(values)) {}

  NSUserDefaults values_;
};

}  // namespace platform
