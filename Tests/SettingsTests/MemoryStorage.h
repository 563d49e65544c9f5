#pragma once

#include "Foundation/Coding/PropertyList.h"
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
    return values_[key].integer().value_or(0);
  }
  bool boolForKey(std::string_view key) const override {
    return values_[key].boolean().value_or(false);
  }
  std::optional<std::string> stringForKey(std::string_view key) const override {
    return holds(key) ? std::optional(*values_[key].text()) : std::nullopt;
  }
  std::optional<Data> dataForKey(std::string_view key) const override {
    return holds(key) ? std::optional(*values_[key].data()) : std::nullopt;
  }
  double doubleForKey(std::string_view key) const override {
    return values_[key].real().value_or(0);
  }
  void setInteger(std::int64_t value, std::string_view key) override { put(value, key); }
  void setBool(bool value, std::string_view key) override { put(value, key); }
  void setString(std::optional<std::string> value, std::string_view key) override {
    put(value ? PropertyList(*value) : PropertyList(), key);
  }
  void setData(std::optional<Data> value, std::string_view key) override {
    put(value ? PropertyList(*value) : PropertyList(), key);
  }
  void setDouble(double value, std::string_view key) override { put(value, key); }

  [[nodiscard]] bool hasValue(std::string_view key) const override { return holds(key); }
  [[nodiscard]] bool holds(std::string_view key) const { return !values_[key].isNull(); }

 private:
  void put(PropertyList value, std::string_view key) {
    (*values_.dictionary())[std::string(key)] = std::move(value);
  }

  PropertyList values_ = PropertyList::Dictionary{};
};

}  // namespace velloro
