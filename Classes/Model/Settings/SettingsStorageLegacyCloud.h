#pragma once

#include "Foundation/Files/NSUbiquitousKeyValueStore.h"
#include "Settings/SettingsStorageContainer.h"

namespace velloro {

/// A former tier, which is kept so that old values can be read. It reports no failures.
class SettingsStorageLegacyCloud final : public SettingsStorageContainer {
 public:
  [[nodiscard]] SettingContent read(std::string_view key, SettingKind kind) const override {
    switch (kind) {
      using enum SettingKind;
      case int_:
        return store_.longLongForKey(key);
      case bool_:
        return store_.boolForKey(key);
      case double_:
        return store_.doubleForKey(key);
      case string:
        return settingContent(store_.stringForKey(key));
      case codable:
        return settingContent(store_.dataForKey(key));
      case noOp:
        break;
    }
    return {};
  }
  void write(SettingContent value, std::string_view key) override {
    std::visit([&](auto& content) { set(std::move(content), key); }, value);
  }

 private:
  void set(std::monostate, std::string_view key) { store_.removeObjectForKey(key); }
  void set(std::int64_t value, std::string_view key) { store_.setLongLong(value, key); }
  void set(bool value, std::string_view key) { store_.setBool(value, key); }
  void set(double value, std::string_view key) { store_.setDouble(value, key); }
  void set(std::string value, std::string_view key) { store_.setString(std::move(value), key); }
  void set(Data value, std::string_view key) { store_.setData(std::move(value), key); }

  void encodingFailed(const EncodingError&) const override {}

  NSUbiquitousKeyValueStore store_ = NSUbiquitousKeyValueStore::defaultStore();
};

}  // namespace velloro
