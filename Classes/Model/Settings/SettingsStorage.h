#pragma once

#include "Settings/Setting.h"
#include "Settings/SettingsStorageContainer.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace velloro {

class VelloroNSPersistentCloudKitContainer;

/// Posted on the default centre when settings have changed; the user info has a
/// `std::vector<Setting>` of them under the key.
inline constexpr const char* settingsChangedNotification = "Settings.SettingsChanged";
inline constexpr const char* settingNamesKey = "settingNamesKey";

/// The tier in which the value of a setting was found.
enum class SettingSource : std::uint8_t { local, cloud, shared };

constexpr auto rawValues(std::type_identity<SettingSource>) {
  return caseNames<SettingSource::shared>();
}

/// The values of the settings, each in the tier in which it lives at this moment.
///
///     storage.setBoolean(true, Setting::themeAutoSwitch);    // true: it has changed
///     storage.boolean(Setting::themeAutoSwitch);             // true
///     // storage.integer(Setting::themeAutoSwitch) does not compile.
///     storage.string(Setting::StringSetting({Setting::selectedTheme, TaskPageNumber{2}})) ==
///         std::nullopt;    // true
///
/// The application reads and writes one tier, the cloud tier where the setting is cloud-stored and
/// the local tier otherwise; values are never merged. An extension reads what is shared from the
/// shared suite, where the application leaves a copy of all that it writes. Both agree on every
/// shared setting except while a write is in progress.
///
/// What is absent, or can't be read, reads as 0, false, 0.0 or absent. Safe from any thread as far
/// as the tiers are. Writes of several processes follow one another.
class SettingsStorage {
 public:
  struct Tiers {
    /// Of this program alone.
    std::shared_ptr<SettingsStorageContainer> localStorage;
    /// Null where the suite can't be opened.
    std::shared_ptr<SettingsStorageContainer> localSharedStorage = nullptr;
    /// Null in a process that opens no object store, such as one that shows a notification. There
    /// the local tier, which follows the cloud, stands in for it.
    std::shared_ptr<SettingsStorageContainer> cloudStorage = nullptr;
    /// For code that migrates old values; settings are not read from it.
    std::shared_ptr<SettingsStorageContainer> legacyCloudStorage = nullptr;
  };
  /// Gives the container of the rows that all of a person's devices share, the one that is open at
  /// that moment; null where there is none.
  using CloudContainer = std::function<std::shared_ptr<VelloroNSPersistentCloudKitContainer>()>;

  /// The process's own, over the defaults of the environment that is current at the first use. That
  /// opens the cloud tier, but in an extension, which waits until it can't do without.
  [[nodiscard]] static SettingsStorage& shared();
  /// Where `shared` finds its cloud tier; a process that doesn't say has none. Once, before the
  /// first use of `shared` and before there are threads. A program with a cloud
  /// tier does it first of all:
  /// `SettingsStorage::setCloudContainer(
  /// [] { return DataManager::shared().cloudPersistentContainer(); });`.
  static void setCloudContainer(CloudContainer container);

  SettingsStorage(Tiers tiers, bool isExtension);
  /// With a `SettingsStorageCoreData` for its cloud tier.
  SettingsStorage(Tiers tiers, bool isExtension, CloudContainer cloudContainer);
  SettingsStorage(const SettingsStorage&) = delete;
  SettingsStorage& operator=(const SettingsStorage&) = delete;

  [[nodiscard]] bool isExtension() const { return isExtension_; }

  // In an extension, these two are 0 and false for a setting that is not shared.
  [[nodiscard]] std::int64_t integer(const Setting::IntSetting& setting) const;
  [[nodiscard]] bool boolean(const Setting::BoolSetting& setting) const;
  // In an extension, these fall back on the tier of the setting.
  [[nodiscard]] double real(const Setting::DoubleSetting& setting) const;
  [[nodiscard]] std::optional<std::string> string(const Setting::StringSetting& setting) const;
  template <typename T>
  [[nodiscard]] std::optional<T> codable(const Setting::CodableSetting& setting) const {
    return containerToRead(setting.setting)->template codableForKey<T>(setting.setting.key());
  }

  // Return whether anything changed; if so, and unless `silent`, tell it by the notification.
  bool setInteger(std::int64_t value, const Setting::IntSetting& setting, bool silent = false);
  bool setBoolean(bool value, const Setting::BoolSetting& setting, bool silent = false);
  bool setReal(double value, const Setting::DoubleSetting& setting, bool silent = false);
  /// Absent removes the value.
  bool setString(std::optional<std::string> value, const Setting::StringSetting& setting,
                 bool silent = false);
  /// Absent removes the value; one that JSON can't hold changes nothing and is logged.
  template <typename T>
  bool setCodable(const std::optional<T>& value, const Setting::CodableSetting& setting,
                  bool silent = false) {
    if (!value) return write({}, setting.setting, silent);
    auto data = container(setting.setting).encoded(*value);
    return data && write(*std::move(data), setting.setting, silent);
  }

  /// Sets one of the two switches that say where settings live, and takes the values along: none
  /// reads otherwise afterwards, unless the cloud has a value of it already, which then counts on
  /// this device as on the others. The values go first, so that a process that is killed meanwhile
  /// leaves everything as it was read before; what it had copied to the cloud by then is copied
  /// again the next time and does not count as a value of the cloud's own. Returns whether anything
  /// changed; on failure (`saveError`) nothing has.
  bool changeTiers(bool value, const Setting::BoolSetting& tierSwitch);
  /// Gives extensions a new copy of what the application reads now, where theirs is another: a
  /// change from elsewhere came by another way than `set…`, or the process that copied was killed.
  /// In an extension nothing.
  void shareAgain() const;

  /// Why what this thread has last written is not kept beyond this process; null when it is, and
  /// when there was nothing to write.
  [[nodiscard]] static ErrorPtr saveError();

  /// Where a read finds the setting; absent where it looks nowhere, as in an extension for a flag
  /// that is not shared.
  [[nodiscard]] std::optional<SettingSource> source(const Setting& setting) const;
  /// Whether the setting lives in the tier that all of a person's devices share. An extension goes
  /// by the application's copies of the switches.
  [[nodiscard]] bool isCloudStored(const Setting& setting) const;
  /// The tier in which it lives.
  [[nodiscard]] SettingsStorageContainer& container(const Setting& setting) const;
  [[nodiscard]] SettingsStorageContainer& localStorage() const { return *tiers_.localStorage; }
  /// Null where there is none. The first call opens it, which reads the container's rows; meanwhile
  /// the local tier is used instead, so that code that makes the container can read settings.
  [[nodiscard]] SettingsStorageContainer* cloudStorage() const;
  /// Null where there is none.
  [[nodiscard]] const SettingsStorageContainer* legacyCloudStorage() const {
    return tiers_.legacyCloudStorage.get();
  }

 private:
  bool write(SettingContent value, const Setting& setting, bool silent);
  struct Move;
  [[nodiscard]] Move moveFor(bool value, SettingCase tierSwitch) const;
  [[nodiscard]] std::set<std::string> copiedBefore() const;
  ErrorPtr keepCopied(const std::set<std::string>& keys) const;
  /// Returns why not, or null.
  ErrorPtr change(bool value, const Setting& tierSwitch, const Move& move);
  [[nodiscard]] bool isSharedCopyUpToDate() const;

  /// Where an extension finds the setting; null when it is not shared, or nothing is.
  [[nodiscard]] const SettingsStorageContainer* sharedContainer(const Setting& setting) const;
  /// Null where a read looks nowhere.
  [[nodiscard]] const SettingsStorageContainer* containerToRead(const Setting& setting) const;
  [[nodiscard]] SettingsStorageContainer& containerOfCopies() const;
  /// As the store reads it: the switches say where settings are, so they aren't read as settings.
  [[nodiscard]] bool isOn(SettingCase tierSwitch) const;

  const Tiers tiers_;
  const bool isExtension_;
  const CloudContainer cloudContainer_;
  mutable std::atomic<bool> isOpen_ = false;  // then the cloud tier stays as it is
  mutable std::recursive_mutex opening_;      // guards the next two until then
  mutable bool isOpening_ = false;
  mutable std::shared_ptr<SettingsStorageContainer> cloudStorage_;
};

}  // namespace velloro
