#include "Settings/SettingsStorage.h"

#include "Foundation/Dispatch/NSNotificationCenter.h"
#include "Settings/RunTarget.h"
#include "Settings/SettingsStorageCoreData.h"
#include "Settings/SettingsStorageLegacyCloud.h"
#include "Settings/SettingsStorageLocal.h"

#include <algorithm>
#include <type_traits>
#include <utility>
#include <vector>

namespace velloro {
namespace {

using Container = SettingsStorageContainer;

/// How a tier reads and writes one kind of value.
template <typename T>
struct Access {
  T (Container::*read)(std::string_view) const;
  void (Container::*write)(T, std::string_view);
};

constexpr Access<std::int64_t> integers{&Container::integerForKey, &Container::setInteger};
constexpr Access<bool> booleans{&Container::boolForKey, &Container::setBool};
constexpr Access<double> reals{&Container::doubleForKey, &Container::setDouble};
constexpr Access<std::optional<std::string>> strings{&Container::stringForKey,
                                                     &Container::setString};
constexpr Access<std::optional<Data>> datas{&Container::dataForKey, &Container::setData};

template <typename T>
T read(const Access<T>& access, const Container* container, const Setting& setting) {
  return container != nullptr ? (container->*access.read)(setting.key()) : T{};
}

void tell(std::vector<Setting> settings) {
  NSNotificationCenter::defaultCenter().post(
      {.name = settingsChangedNotification, .userInfo = {{settingNamesKey, std::move(settings)}}});
}

/// Of this thread's last write.
thread_local ErrorPtr writeError;

/// Into the setting's own tier, if the value is another one, and from there into the copy: an
/// application whose setting lives in the cloud still has it in its suite.
template <typename T>
bool put(const Access<T>& access, Container& own, Container& copy, const Setting& setting,
         std::type_identity_t<T> value) {
  const std::string key = setting.key();
  writeError = nullptr;
  if ((own.*access.read)(key) == value) return false;
  (own.*access.write)(std::move(value), key);
  writeError = own.saveError();
  (copy.*access.write)((own.*access.read)(key), key);
  if (writeError == nullptr) writeError = copy.saveError();
  return true;
}

/// What is told of it may be answered by a further write, so others may write again by then.
template <typename T>
bool write(const Access<T>& access, const SettingsStorage& storage, Container& copy,
           const Setting& setting, std::type_identity_t<T> value, bool silent) {
  {
    const auto alone = copy.exclusiveAccess();
    if (!put(access, storage.container(setting), copy, setting, std::move(value))) return false;
  }
  const ErrorPtr error = writeError;
  if (!silent) tell({setting});
  writeError = error;
  return true;
}

/// Calls `work` with the access to a kind of values; nothing is kept of a setting without a kind.
template <typename Work>
void withAccess(SettingKind kind, const Work& work) {
  using enum SettingKind;
  switch (kind) {
    case bool_:
      return work(booleans);
    case int_:
      return work(integers);
    case double_:
      return work(reals);
    case string:
      return work(strings);
    case codable:
      return work(datas);
    case noOp:
      break;
  }
}

bool isTierSwitch(const Setting& setting) {
  return setting.name == Setting::cloudSyncTasksEnabled ||
         setting.name == Setting::cloudSyncThemesDisabled;
}

/// What extensions read of the suite.
bool isCopied(const Setting& setting) {
  return setting.row().isShared || isTierSwitch(setting);
}

bool isCopy(const Container& from, const Container& to, const Setting& setting) {
  bool isSame = true;
  withAccess(setting.row().kind, [&](const auto& access) {
    isSame = read(access, &from, setting) == read(access, &to, setting);
  });
  return isSame;
}

void copy(const Container& from, Container& to, const Setting& setting) {
  withAccess(setting.row().kind, [&](const auto& access) {
    (to.*access.write)(read(access, &from, setting), setting.key());
  });
}

/// Of the process's own storage.
SettingsStorage::CloudContainer& processContainer() {
  static auto* const container = new SettingsStorage::CloudContainer;
  return *container;
}

}  // namespace

// In two steps: what opens the cloud tier may ask for the settings.
SettingsStorage& SettingsStorage::shared() {
  static auto* const storage =
      new SettingsStorage({.localStorage = std::make_shared<SettingsStorageLocal>(),
                           .localSharedStorage = SettingsStorageLocalShared::open(),
                           .legacyCloudStorage = std::make_shared<SettingsStorageLegacyCloud>()},
                          velloro::isExtension(), processContainer());
  if (!storage->isExtension_) (void)storage->cloudStorage();
  [[maybe_unused]] static const bool isShared = (storage->shareAgain(), true);
  return *storage;
}

void SettingsStorage::setCloudContainer(CloudContainer container) {
  processContainer() = std::move(container);
}

SettingsStorage::SettingsStorage(Tiers tiers, bool isExtension)
    : SettingsStorage(std::move(tiers), isExtension, nullptr) {}

SettingsStorage::SettingsStorage(Tiers tiers, bool isExtension, CloudContainer cloudContainer)
    : tiers_(std::move(tiers)),
      isExtension_(isExtension),
      cloudContainer_(std::move(cloudContainer)),
      cloudStorage_(tiers_.cloudStorage) {}

SettingsStorageContainer* SettingsStorage::cloudStorage() const {
  if (openingThread_ == std::this_thread::get_id()) return nullptr;
  std::call_once(opensCloudStorage_, [this] {
    if (cloudContainer_ == nullptr) return;
    openingThread_ = std::this_thread::get_id();
    cloudStorage_ = std::make_shared<SettingsStorageCoreData>(cloudContainer_, *this);
    openingThread_ = std::thread::id();
  });
  return cloudStorage_.get();
}

std::int64_t SettingsStorage::integer(const Setting::IntSetting& setting) const {
  return read(integers, containerToRead(setting.setting), setting.setting);
}

bool SettingsStorage::boolean(const Setting::BoolSetting& setting) const {
  return read(booleans, containerToRead(setting.setting), setting.setting);
}

double SettingsStorage::real(const Setting::DoubleSetting& setting) const {
  return read(reals, containerToRead(setting.setting), setting.setting);
}

std::optional<std::string> SettingsStorage::string(const Setting::StringSetting& setting) const {
  return read(strings, containerToRead(setting.setting), setting.setting);
}

bool SettingsStorage::setInteger(std::int64_t value, const Setting::IntSetting& setting,
                                 bool silent) {
  const Setting& name = setting.setting;
  return write(integers, *this, containerOfCopies(), name, value, silent);
}

bool SettingsStorage::setBoolean(bool value, const Setting::BoolSetting& setting, bool silent) {
  const Setting& name = setting.setting;
  if (!write(booleans, *this, containerOfCopies(), name, value, silent)) return false;
  if (isTierSwitch(name)) shareAgain();
  return true;
}

bool SettingsStorage::setReal(double value, const Setting::DoubleSetting& setting, bool silent) {
  const Setting& name = setting.setting;
  return write(reals, *this, containerOfCopies(), name, value, silent);
}

bool SettingsStorage::setString(std::optional<std::string> value,
                                const Setting::StringSetting& setting, bool silent) {
  const Setting& name = setting.setting;
  return write(strings, *this, containerOfCopies(), name, std::move(value), silent);
}

bool SettingsStorage::setData(std::optional<Data> value, const Setting::CodableSetting& setting,
                              bool silent) {
  const Setting& name = setting.setting;
  return write(datas, *this, containerOfCopies(), name, std::move(value), silent);
}

/// What goes along with a switch, from one tier to another.
struct SettingsStorage::Move {
  Container* from = nullptr;
  Container* to = nullptr;
  std::vector<Setting> copied;
  /// Those of which the other tier has a value already, which is another one.
  std::vector<Setting> kept;
};

bool SettingsStorage::changeTiers(bool value, const Setting::BoolSetting& tierSwitch) {
  const Setting& name = tierSwitch.setting;
  std::vector<Setting> changed;
  {
    const auto alone = containerOfCopies().exclusiveAccess();
    writeError = nullptr;
    if (isOn(name.name) == value) return false;
    auto* const cloud = cloudStorage();
    const auto refreshed = cloud != nullptr ? cloud->refresh() : Result<void>();
    const Move move = moveFor(value, name.name);
    const bool isKnown = refreshed || move.to == nullptr;  // what is to go along
    writeError = isKnown ? change(value, name, move) : refreshed.error();
    if (writeError != nullptr) return false;
    changed = move.kept;
  }
  tell({name});
  if (!changed.empty()) tell(std::move(changed));
  writeError = nullptr;
  return true;
}

SettingsStorage::Move SettingsStorage::moveFor(bool value, SettingCase tierSwitch) const {
  const auto isOnThen = [&](SettingCase name) { return name == tierSwitch ? value : isOn(name); };
  const bool areTasks = isOnThen(SettingCase::cloudSyncTasksEnabled);
  const bool areThemesNot = isOnThen(SettingCase::cloudSyncThemesDisabled);
  Move move;
  for (const Setting& setting : Setting::allCases()) {
    const bool isCloudThen = velloro::isCloudStored(setting.row().tier, areTasks, areThemesNot);
    auto* const cloud = isCloudThen ? cloudStorage() : nullptr;
    Container* const from = &container(setting);
    Container* const to = cloud != nullptr ? cloud : tiers_.localStorage.get();
    if (from == to) continue;
    move.from = from;  // of all of them the same
    move.to = to;
    if (isCopy(*from, *to, setting)) continue;
    (isCloudThen && to->hasValue(setting.key()) ? move.kept : move.copied).push_back(setting);
  }
  return move;
}

ErrorPtr SettingsStorage::change(bool value, const Setting& tierSwitch, const Move& move) {
  if (!move.copied.empty()) {
    const auto copied = move.to->writeTogether([&] {
      for (const Setting& setting : move.copied) copy(*move.from, *move.to, setting);
    });
    if (!copied) return copied.error();
  }
  put(booleans, *tiers_.localStorage, containerOfCopies(), tierSwitch, value);
  if (const ErrorPtr error = writeError) {
    put(booleans, *tiers_.localStorage, containerOfCopies(), tierSwitch, !value);
    // Values that nobody has set would count in the cloud.
    if (move.to != nullptr && move.to != tiers_.localStorage.get()) {
      (void)move.to->writeTogether([&] {
        for (const Setting& setting : move.copied) move.to->setString(std::nullopt, setting.key());
      });
    }
    return error;
  }
  for (const Setting& setting : move.kept) copy(*move.to, containerOfCopies(), setting);
  return nullptr;
}

void SettingsStorage::shareAgain() const {
  if (isSharedCopyUpToDate()) return;
  const auto alone = containerOfCopies().exclusiveAccess();
  if (auto* const cloud = cloudStorage(); cloud != nullptr && !cloud->refresh().has_value()) return;
  for (const Setting& setting : Setting::allCases()) {
    Container& shared = *tiers_.localSharedStorage;
    const Container& own = container(setting);
    if (isCopied(setting) && !isCopy(own, shared, setting)) copy(own, shared, setting);
  }
}

bool SettingsStorage::isSharedCopyUpToDate() const {
  if (isExtension_ || tiers_.localSharedStorage == nullptr) return true;
  return std::ranges::all_of(Setting::allCases(), [&](const Setting& setting) {
    return !isCopied(setting) || isCopy(container(setting), *tiers_.localSharedStorage, setting);
  });
}

ErrorPtr SettingsStorage::saveError() {
  return writeError;
}

bool SettingsStorage::isCloudStored(const Setting& setting) const {
  const SettingTier tier = setting.row().tier;
  if (tier == SettingTier::local) return false;
  return velloro::isCloudStored(tier, isOn(SettingCase::cloudSyncTasksEnabled),
                                isOn(SettingCase::cloudSyncThemesDisabled));
}

SettingsStorageContainer& SettingsStorage::container(const Setting& setting) const {
  SettingsStorageContainer* cloud = isCloudStored(setting) ? cloudStorage() : nullptr;
  return cloud != nullptr ? *cloud : *tiers_.localStorage;
}

const SettingsStorageContainer* SettingsStorage::sharedContainer(const Setting& setting) const {
  return setting.row().isShared ? tiers_.localSharedStorage.get() : nullptr;
}

const SettingsStorageContainer* SettingsStorage::containerToRead(const Setting& setting) const {
  using enum SettingKind;
  const Container* shared = isExtension_ ? sharedContainer(setting) : nullptr;
  const auto hasShared = [&](const auto& access) {
    return read(access, shared, setting).has_value();
  };
  switch (setting.row().kind) {
    case bool_:
    case int_:
      return isExtension_ ? shared : &container(setting);
    case string:
      return hasShared(strings) ? shared : &container(setting);
    case codable:
      return hasShared(datas) ? shared : &container(setting);
    case double_:  // none of them is shared
      return &container(setting);
    case noOp:
      break;
  }
  return nullptr;
}

std::optional<SettingSource> SettingsStorage::source(const Setting& setting) const {
  const Container* read = containerToRead(setting);
  if (read == nullptr) return std::nullopt;
  if (read == tiers_.localStorage.get()) return SettingSource::local;
  return read == tiers_.localSharedStorage.get() ? SettingSource::shared : SettingSource::cloud;
}

SettingsStorageContainer& SettingsStorage::containerOfCopies() const {
  return *(tiers_.localSharedStorage ? tiers_.localSharedStorage : tiers_.localStorage);
}

bool SettingsStorage::isOn(SettingCase tierSwitch) const {
  const bool hasSuite = tiers_.localSharedStorage != nullptr;
  // An extension learns only from the shared copy which themes a person keeps on one device.
  if (isExtension_ && !hasSuite && tierSwitch == Setting::cloudSyncThemesDisabled) return false;
  const bool isInSuite = isExtension_ && hasSuite;
  const Container& tier = *(isInSuite ? tiers_.localSharedStorage : tiers_.localStorage);
  return tier.boolForKey(settingRowOf(tierSwitch).key);
}

}  // namespace velloro
