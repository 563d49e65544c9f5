#pragma once

#include "Foundation/Files/NSUbiquitousKeyValueStore.h"
#include "Settings/SettingsStorageContainer.h"

namespace velloro {

/// The tier of long ago, which only stays so that what was written there can be read. It tells of
/// no failure.
class SettingsStorageLegacyCloud final : public SettingsStorageContainer {
 public:
  [[nodiscard]] std::int64_t integerForKey(std::string_view key) const override {
    return store_.longLongForKey(key);
  }
  void setInteger(std::int64_t value, std::string_view key) override {
    store_.setLongLong(value, key);
  }
  [[nodiscard]] bool boolForKey(std::string_view key) const override {
    return store_.boolForKey(key);
  }
  void setBool(bool value, std::string_view key) override { store_.setBool(value, key); }
  [[nodiscard]] std::optional<std::string> stringForKey(std::string_view key) const override {
    return store_.stringForKey(key);
  }
  void setString(std::optional<std::string> value, std::string_view key) override {
    store_.setString(std::move(value), key);
  }
  [[nodiscard]] std::optional<Data> dataForKey(std::string_view key) const override {
    return store_.dataForKey(key);
  }
  void setData(std::optional<Data> value, std::string_view key) override {
    store_.setData(std::move(value), key);
  }
  [[nodiscard]] double doubleForKey(std::string_view key) const override {
    return store_.doubleForKey(key);
  }
  void setDouble(double value, std::string_view key) override { store_.setDouble(value, key); }

 private:
  void encodingFailed(const EncodingError&) const override {}

  NSUbiquitousKeyValueStore store_ = NSUbiquitousKeyValueStore::defaultStore();
};

}  // namespace velloro
