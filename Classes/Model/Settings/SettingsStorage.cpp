#include "Settings/SettingsStorage.h"

#include "Foundation/Dispatch/NSNotificationCenter.h"
#include "Foundation/Text/String.h"
#include "Settings/RunTarget.h"
#include "Settings/SettingsStorageCoreData.h"
#include "Settings/SettingsStorageLegacyCloud.h"
#include "Settings/SettingsStorageLocal.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace velloro {
namespace {

using Container = SettingsStorageContainer;

/// In the local tier, while values are being copied to the cloud: what `copyMark` gives for each.
constexpr const char* copiedToCloud = "tierSwitch.copiedToCloud";

void tell(std::vector<Setting> settings) {
  NSNotificationCenter::defaultCenter().post(
      {.name = settingsChangedNotification, .userInfo = {{settingNamesKey, std::move(settings)}}});
}

/// Of this thread's last write.
thread_local ErrorPtr writeError;

SettingContent read(const Container& container, const Setting& setting) {
  return container.read(setting.key(), setting.row().kind);
}

void copy(const Container& from, Container& to, const Setting& setting) {
  to.write(read(from, setting), setting.key());
}

bool isCopy(const Container& from, const Container& to, const Setting& setting) {
  return read(from, setting) == read(to, setting);
}

/// Of a value that is copied, or has been, from the one to another container. Marks of earlier
/// versions are the key alone, for any value.
std::string copyMark(const Container& container, const Setting& setting) {
  const auto text = [](const auto& value) -> std::string {
    using Value = std::decay_t<decltype(value)>;
    if constexpr (std::same_as<Value, std::monostate>) {
      return "";
    } else if constexpr (std::same_as<Value, std::string>) {
      return value;
    } else if constexpr (std::same_as<Value, Data>) {
      return std::string(value.text());
    } else {
      return stringWithFormat("%.17g", static_cast<double>(value));
    }
  };
  return setting.key() + "=" + std::visit(text, read(container, setting));
}

/// Into the setting's own tier, if the value is another one, and from there into the copy: an
/// application whose setting lives in the cloud still has it in its suite.
bool put(Container& own, Container& copies, const Setting& setting, SettingContent value) {
  writeError = nullptr;
  if (read(own, setting) == value) return false;
  own.write(std::move(value), setting.key());
  writeError = own.saveError();
  copy(own, copies, setting);
  if (writeError == nullptr) writeError = copies.saveError();
  return true;
}

bool isTierSwitch(const Setting& setting) {
  return setting.name == Setting::cloudSyncTasksEnabled ||
         setting.name == Setting::cloudSyncThemesDisabled;
}

/// What extensions read of the suite.
bool isCopied(const Setting& setting) {
  return setting.row().isShared || isTierSwitch(setting);
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
  // Without a lock, which a thread that waits for the store would otherwise hold here.
  if (isOpen_.load(std::memory_order_acquire)) return cloudStorage_.get();
  // Other threads wait while it is opened; only what opens it comes here meanwhile.
  const std::scoped_lock lock(opening_);
  if (!std::exchange(isOpening_, true)) {
    if (cloudContainer_ != nullptr) {
      cloudStorage_ = std::make_shared<SettingsStorageCoreData>(cloudContainer_, *this);
    }
    isOpen_.store(true, std::memory_order_release);
  }
  return cloudStorage_.get();
}

std::int64_t SettingsStorage::integer(const Setting::IntSetting& setting) const {
  const Container* container = containerToRead(setting.setting);
  return container != nullptr ? container->integerForKey(setting.setting.key()) : 0;
}

bool SettingsStorage::boolean(const Setting::BoolSetting& setting) const {
  const Container* container = containerToRead(setting.setting);
  return container != nullptr && container->boolForKey(setting.setting.key());
}

double SettingsStorage::real(const Setting::DoubleSetting& setting) const {
  return containerToRead(setting.setting)->doubleForKey(setting.setting.key());
}

std::optional<std::string> SettingsStorage::string(const Setting::StringSetting& setting) const {
  return containerToRead(setting.setting)->stringForKey(setting.setting.key());
}

bool SettingsStorage::setInteger(std::int64_t value, const Setting::IntSetting& setting,
                                 bool silent) {
  return write(value, setting.setting, silent);
}

bool SettingsStorage::setBoolean(bool value, const Setting::BoolSetting& setting, bool silent) {
  if (!write(value, setting.setting, silent)) return false;
  if (isTierSwitch(setting.setting)) shareAgain();
  return true;
}

bool SettingsStorage::setReal(double value, const Setting::DoubleSetting& setting, bool silent) {
  return write(value, setting.setting, silent);
}

bool SettingsStorage::setString(std::optional<std::string> value,
                                const Setting::StringSetting& setting, bool silent) {
  return write(settingContent(std::move(value)), setting.setting, silent);
}

// What is told of it may be answered by a further write, so others may write again by then.
bool SettingsStorage::write(SettingContent value, const Setting& setting, bool silent) {
  Container& copies = containerOfCopies();
  {
    const auto alone = copies.exclusiveAccess();
    if (!put(container(setting), copies, setting, std::move(value))) return false;
  }
  const ErrorPtr error = writeError;
  if (!silent) tell({setting});
  writeError = error;
  return true;
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
    (void)keepCopied({});
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
  const std::set<std::string> ours = copiedBefore();
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
    const bool isOurs = ours.contains(setting.key()) || ours.contains(copyMark(*to, setting));
    const bool counts = isCloudThen && !isOurs && to->hasValue(setting.key());
    (counts ? move.kept : move.copied).push_back(setting);
  }
  return move;
}

/// The marks of processes that were killed before they had set the switch.
std::set<std::string> SettingsStorage::copiedBefore() const {
  return tiers_.localStorage->codableForKey<std::set<std::string>>(copiedToCloud)
      .value_or(std::set<std::string>());
}

/// On the disk when it returns; returns why not, or null.
ErrorPtr SettingsStorage::keepCopied(const std::set<std::string>& marks) const {
  if (marks == copiedBefore()) return nullptr;
  tiers_.localStorage->setCodable(marks.empty() ? std::nullopt : std::optional(marks),
                                  copiedToCloud);
  return tiers_.localStorage->saveError();
}

ErrorPtr SettingsStorage::change(bool value, const Setting& tierSwitch, const Move& move) {
  const bool isToCloud = move.to != nullptr && move.to != tiers_.localStorage.get();
  const std::set<std::string> before = copiedBefore();
  if (!move.copied.empty()) {
    std::set<std::string> marks = before;
    for (const Setting& setting : move.copied) marks.insert(copyMark(*move.from, setting));
    if (ErrorPtr error = isToCloud ? keepCopied(marks) : nullptr) return error;
    const auto copied = move.to->writeTogether([&] {
      for (const Setting& setting : move.copied) copy(*move.from, *move.to, setting);
    });
    if (!copied) return (void)keepCopied(before), copied.error();
  }
  put(*tiers_.localStorage, containerOfCopies(), tierSwitch, value);
  if (const ErrorPtr error = writeError) {
    put(*tiers_.localStorage, containerOfCopies(), tierSwitch, !value);
    // Values that nobody has set would count in the cloud.
    if (isToCloud) {
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
  switch (setting.row().kind) {
    case bool_:
    case int_:
      return isExtension_ ? shared : &container(setting);
    case string:
    case codable: {
      const bool isThere = shared != nullptr && read(*shared, setting) != SettingContent();
      return isThere ? shared : &container(setting);
    }
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
