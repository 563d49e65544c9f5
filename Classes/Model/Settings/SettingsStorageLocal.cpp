#include "Settings/SettingsStorageLocal.h"

#include "Foundation/Files/FileLock.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Environment.h"
#include "Settings/AppGroup.h"

namespace velloro {
namespace {

/// What a suite takes for a value, null for none.
template <typename T>
PropertyList boxed(std::optional<T> value) {
  return value ? PropertyList(std::move(*value)) : PropertyList();
}

}  // namespace

std::int64_t SettingsStorageLocalUserDefaults::integerForKey(std::string_view key) const {
  return defaults_.integerForKey(key);
}

void SettingsStorageLocalUserDefaults::setInteger(std::int64_t value, std::string_view key) {
  defaults_.setObject(value, key);
}

bool SettingsStorageLocalUserDefaults::boolForKey(std::string_view key) const {
  return defaults_.boolForKey(key);
}

void SettingsStorageLocalUserDefaults::setBool(bool value, std::string_view key) {
  defaults_.setObject(value, key);
}

std::optional<std::string> SettingsStorageLocalUserDefaults::stringForKey(
    std::string_view key) const {
  return defaults_.stringForKey(key);
}

void SettingsStorageLocalUserDefaults::setString(std::optional<std::string> value,
                                                 std::string_view key) {
  defaults_.setObject(boxed(std::move(value)), key);
}

std::optional<Data> SettingsStorageLocalUserDefaults::dataForKey(std::string_view key) const {
  return defaults_.dataForKey(key);
}

void SettingsStorageLocalUserDefaults::setData(std::optional<Data> value, std::string_view key) {
  defaults_.setObject(boxed(std::move(value)), key);
}

double SettingsStorageLocalUserDefaults::doubleForKey(std::string_view key) const {
  return defaults_.doubleForKey(key);
}

void SettingsStorageLocalUserDefaults::setDouble(double value, std::string_view key) {
  defaults_.setObject(value, key);
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

}  // namespace velloro
