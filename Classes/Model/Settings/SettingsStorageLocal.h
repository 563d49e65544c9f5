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

  [[nodiscard]] SettingContent read(std::string_view key, SettingKind kind) const override;
  void write(SettingContent value, std::string_view key) override;
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

/// For what the application and its extensions share: that tier, or the program's own where the
/// suite can't be opened.
[[nodiscard]] std::shared_ptr<SettingsStorageContainer> sharedOrLocalStorage();

}  // namespace velloro
