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

/// "true" or "false". \throws UsageError
[[nodiscard]] bool flagArgument(const std::string& text);
/// Sets a setting to what a text says: true or false, a number, a text, or JSON, by the setting's
/// kind; the start of the day also as 04:00:00. What no reader of the setting would accept, such as
/// a theme that there isn't, is refused. Without a text nothing is left of the value. \throws
/// UsageError
void setArgument(SettingsStorage& storage, const Setting& setting,
                 const std::optional<std::string>& text);

/// All that can be listed, in their order: not those of a user, a filter or a family.
[[nodiscard]] std::vector<Setting> listedSettings();

}  // namespace velloro
