#pragma once

#include "Settings/SettingsStorageContainer.h"

#include <functional>
#include <map>
#include <string>
#include <utility>

namespace velloro {

/// A tier in memory, whose values a test may look into.
class MemoryStorage : public SettingsStorageContainer {
 public:
  SettingContent read(std::string_view key, SettingKind kind) const override {
    const auto found = values_.find(key);
    if (found != values_.end()) return found->second;
    if (kind == SettingKind::int_) return 0;
    if (kind == SettingKind::bool_) return false;
    return kind == SettingKind::double_ ? SettingContent(0.0) : SettingContent();
  }
  void write(SettingContent value, std::string_view key) override {
    values_.insert_or_assign(std::string(key), std::move(value));
  }

  [[nodiscard]] bool hasValue(std::string_view key) const override { return holds(key); }
  [[nodiscard]] bool holds(std::string_view key) const {
    const auto found = values_.find(key);
    return found != values_.end() && found->second != SettingContent();
  }

 private:
  std::map<std::string, SettingContent, std::less<>> values_;
};

}  // namespace velloro
