#include "Settings/SettingsStorageLocal.h"

#include "Foundation/Files/FileLock.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Environment.h"
#include "Settings/AppGroup.h"

#include <concepts>

namespace velloro {

SettingContent SettingsStorageLocalUserDefaults::read(std::string_view key,
                                                      SettingKind kind) const {
  switch (kind) {
    using enum SettingKind;
    case int_:
      return defaults_.integerForKey(key);
    case bool_:
      return defaults_.boolForKey(key);
    case double_:
      return defaults_.doubleForKey(key);
    case string:
      return settingContent(defaults_.stringForKey(key));
    case codable:
      return settingContent(defaults_.dataForKey(key));
    case noOp:
      break;
  }
  return {};
}

void SettingsStorageLocalUserDefaults::write(SettingContent value, std::string_view key) {
  const auto boxed = [](auto content) {
    if constexpr (std::same_as<decltype(content), std::monostate>) {
      return PropertyList();
    } else {
      return PropertyList(std::move(content));
    }
  };
  defaults_.setObject(std::visit(boxed, std::move(value)), key);
}

std::shared_ptr<void> SettingsStorageLocalShared::exclusiveAccess() const {
  const auto& folder = Environment::current().directories().preferences;
  if (!NSFileManager::createDirectory(folder)) return nullptr;
  auto lock = FileLock::exclusive(folder / ".settings.lock");
  return lock ? std::make_shared<FileLock>(*std::move(lock)) : nullptr;
}

std::shared_ptr<SettingsStorageLocalShared> SettingsStorageLocalShared::open() {
  const auto suite = NSUserDefaults::initWithSuiteName(appGroupIdentifier);
  return suite ? std::make_shared<SettingsStorageLocalShared>(*suite) : nullptr;
}

std::shared_ptr<SettingsStorageContainer> sharedOrLocalStorage() {
  if (auto shared = SettingsStorageLocalShared::open()) return shared;
  return std::make_shared<SettingsStorageLocal>();
}

}  // namespace velloro
