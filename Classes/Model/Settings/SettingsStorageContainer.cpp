#include "Settings/SettingsStorageContainer.h"

#include "OxLog/Log.h"

namespace velloro {

bool SettingsStorageContainer::hasValue(std::string_view key) const {
  return integerForKey(key) != 0 || boolForKey(key) || doubleForKey(key) != 0 ||
         stringForKey(key) || dataForKey(key);
}

void SettingsStorageContainer::encodingFailed(const EncodingError& error) const {
  Log::settings.error([&] { return "set(codable:forKey:): " + error.localizedDescription(); });
}

}  // namespace velloro
