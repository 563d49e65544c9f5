#pragma once

#include "Foundation/PropertyList.h"
#include "Settings/SettingsStorageContainer.h"

#include <map>
#include <optional>
#include <string>
#include <utility>

namespace velloro {

/// A tier in memory, whose values a test may look into.
class MemoryStorage final : public SettingsStorageContainer {
 public:
  std::int64_t integerForKey(std::string_view key) const override {
    return values[key].integer().value_or(0);
  }
  void setInteger(std::int64_t value, std::string_view key) override { put(value, key); }
  bool boolForKey(std::string_view key) const override {
    return values[key].boolean().value_or(false);
  }
  void setBool(bool value, std::string_view key) override { put(value, key); }
  std::optional<std::string> stringForKey(std::string_view key) const override {
    const auto* text = values[key].text();
    return text != nullptr ? std::optional(*text) : std::nullopt;
  }
  void setString(std::optional<std::string> value, std::string_view key) override {
    put(value ? PropertyList(*value) : PropertyList(), key);
  }
  std::optional<Data> dataForKey(std::string_view key) const override {
    const auto* data = values[key].data();
    return data != nullptr ? std::optional(*data) : std::nullopt;
  }
  void setData(std::optional<Data> value, std::string_view key) override {
    put(value ? PropertyList(*value) : PropertyList(), key);
  }
  double doubleForKey(std::string_view key) const override {
    return values[key].real().value_or(0);
  }
  void setDouble(double value, std::string_view key) override { put(value, key); }

  [[nodiscard]] bool holds(const std::string& key) const { return !values[key].isNull(); }

 private:
  void put(PropertyList value, std::string_view key) {
    (*values.dictionary())[std::string(key)] = std::move(value);
  }

  PropertyList values = PropertyList::Dictionary{};
};

}  // namespace velloro
