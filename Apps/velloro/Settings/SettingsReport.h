#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Coding/PropertyList.h"
#include "Settings/SettingsStorage.h"

#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// A setting and its value, as `velloro settings` prints them.
struct SettingsReport {
  std::string name;
  std::string key;
  std::string description;  ///< One sentence.
  std::string fallback;     ///< What holds where nothing is stored.
  Setting::Kind kind = Setting::Kind::noOp;
  std::optional<SettingSource> tier;  ///< Absent where nothing is looked at.
  PropertyList value;                 ///< Null where there is none.

  static constexpr auto codingKeys = keys(
      platform::key("name", &SettingsReport::name), platform::key("key", &SettingsReport::key),
      platform::key("description", &SettingsReport::description),
      platform::key("default", &SettingsReport::fallback),
      platform::key("kind", &SettingsReport::kind), platform::key("tier", &SettingsReport::tier),
      platform::key("value", &SettingsReport::value));

  [[nodiscard]] static SettingsReport of(const SettingsStorage& storage, const Setting& setting);

  /// Whether anything was set: a value that is not absent, false or 0.
  [[nodiscard]] bool hasValue() const;
};

/// One line for each setting, and, where they are described, a second one with its description.
[[nodiscard]] std::string table(const std::vector<SettingsReport>& reports,
                                bool isDescribed = false);

}  // namespace velloro
