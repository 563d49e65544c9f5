#include "Settings/SettingsStorageContainer.h"

#include "OxLog/Log.h"

namespace velloro {

void SettingsStorageContainer::encodingFailed(const EncodingError& error) const {
  Log::settings.error([&] { return "set(codable:forKey:): " + error.localizedDescription(); });
}

}  // namespace velloro
