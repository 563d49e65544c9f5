#pragma once

#include "Settings/SettingsStorage.h"

#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// A setting by its name, "startOfDay" or "selectedTheme.2", or by the key that it is stored under,
/// "Settings_StartOfDay" or "UITheme_2". \throws UsageError
[[nodiscard]] Setting settingArgument(const std::string& text);
/// "selectedTheme.2"; `settingArgument` reads it back.
[[nodiscard]] std::string settingName(const Setting& setting);

/// Sets a setting to what a text says: true or false, a number, a text, or JSON, by the setting's
/// kind; the start of the day also as 4:00 or 04:00:00. Without a text the value is removed.
/// \throws UsageError for what no reader of the setting accepts (`SettingRule`).
void setArgument(SettingsStorage& storage, const Setting& setting,
                 const std::optional<std::string>& text);

/// All that can be listed, in their order: not those of a user, a filter or a family.
[[nodiscard]] std::vector<Setting> listedSettings();

}  // namespace velloro
