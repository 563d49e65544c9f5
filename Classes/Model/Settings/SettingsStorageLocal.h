#pragma once

#include "Foundation/Files/NSUserDefaults.h"
#include "Settings/SettingsStorageContainer.h"

#include <memory>
#include <utility>

namespace velloro {

/// A tier on one suite of defaults; the suite's conversions apply.
class SettingsStorageLocalUserDefaults : public SettingsStorageContainer {
 public:
  explicit SettingsStorageLocalUserDefaults(NSUserDefaults defaults)
      : defaults_(std::move(defaults)) {}

  [[nodiscard]] std::int64_t integerForKey(std::string_view key) const override;
  void setInteger(std::int64_t value, std::string_view key) override;
  [[nodiscard]] bool boolForKey(std::string_view key) const override;
  void setBool(bool value, std::string_view key) override;
  [[nodiscard]] std::optional<std::string> stringForKey(std::string_view key) const override;
  void setString(std::optional<std::string> value, std::string_view key) override;
  [[nodiscard]] std::optional<Data> dataForKey(std::string_view key) const override;
  void setData(std::optional<Data> value, std::string_view key) override;
  [[nodiscard]] double doubleForKey(std::string_view key) const override;
  void setDouble(double value, std::string_view key) override;
  [[nodiscard]] ErrorPtr saveError() const override { return defaults_.saveError(); }

 private:
  NSUserDefaults defaults_;
};

/// The tier of this program alone: the standard defaults.
class SettingsStorageLocal final : public SettingsStorageLocalUserDefaults {
 public:
  SettingsStorageLocal()
      : SettingsStorageLocalUserDefaults(NSUserDefaults::standardUserDefaults()) {}
};

/// The tier that the application and its extensions share.
class SettingsStorageLocalShared final : public SettingsStorageLocalUserDefaults {
 public:
  using SettingsStorageLocalUserDefaults::SettingsStorageLocalUserDefaults;

  [[nodiscard]] std::shared_ptr<void> exclusiveAccess() const override;

  /// Null where the suite can't be opened.
  [[nodiscard]] static std::shared_ptr<SettingsStorageLocalShared> open();
};

}  // namespace velloro
