#pragma once

#include "Settings/Setting.h"

#include <string>
#include <vector>

namespace velloro {

/// Each of the 60 cases once, with a payload where it has one.
inline std::vector<Setting> everySetting() {
  using enum SettingPayload;
  std::vector<Setting> settings;
  for (const Setting::Case name : allCases<Setting::Case>()) {
    const SettingPayload payload = settingRowOf(name).payload;
    if (payload == page) {
      settings.emplace_back(name, TaskPageNumber{2});
    } else if (payload == none) {
      settings.emplace_back(name);
    } else {
      settings.emplace_back(name, std::string("circular"));
    }
  }
  return settings;
}

}  // namespace velloro
