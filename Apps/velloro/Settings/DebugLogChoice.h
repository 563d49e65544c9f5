#pragma once

#include "velloro/Settings/SettingsReport.h"

#include <optional>
#include <string>

namespace velloro {

/// Which lines this program writes to its debug log, as `velloro settings` sets and prints it:
/// "debug" for all of that level or above, "info:database,settings" for those of some categories.
/// It is not one of the settings in `SettingTable.h`; `LogManager` keeps it.
inline constexpr std::string_view debugLogName = "debugLog";

/// Without a text, no lines are written any more. \throws UsageError
void chooseDebugLog(const std::optional<std::string>& text);
[[nodiscard]] SettingsReport debugLogReport();

}  // namespace velloro
