#pragma once

#include "Foundation/Dispatch/DispatchQueue.h"
#include "Foundation/Dispatch/NSNotificationCenter.h"
#include "Foundation/Time/Date.h"
#include "Settings/SettingEntity.h"
#include "Settings/SettingsStorage.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace velloro {

/// The tier that all of a person's devices share: rows of the mirrored store, one for a key.
///
///     SettingsStorageCoreData cloud([this] { return container; }, storage);
///     cloud.setInteger(14400, "Settings_StartOfDay");    // in the store when this returns
///     cloud.integerForKey("Settings_StartOfDay");        // 14400: from memory
///
/// All rows are kept in memory, and reads use only these. They are read again whenever the view
/// context merges what others have saved; then the new values are written to the local tier, and
/// `settingsChangedNotification` lists the changed settings. A write whose save fails is logged,
/// reported by `saveError`, and lasts until the next such merge.
///
/// Safe from any thread. No member waits for the main queue.
class SettingsStorageCoreData final : public SettingsStorageContainer {
 public:
  using CloudContainer = SettingsStorage::CloudContainer;

  /// What a row holds, and so what is held in memory of it.
  struct SettingValue {
    std::optional<std::string> stringValue;
    std::optional<Date> dateValue;
    std::int64_t intValue = 0;
    bool booleanValue = false;
    std::optional<Data> dataValue;
    double doubleValue = 0;

    bool operator==(const SettingValue&) const = default;
  };

  /// \param container Asked at each use.
  /// \param settings Says which settings are cloud-stored and has the local tier; outlives this.
  SettingsStorageCoreData(CloudContainer container, const SettingsStorage& settings);

  [[nodiscard]] SettingContent read(std::string_view key, SettingKind kind) const override;
  void write(SettingContent value, std::string_view key) override;
  [[nodiscard]] bool hasValue(std::string_view key) const override;
  /// Within a transaction of the view context it reads what that sees.
  Result<void> refresh() override;
  [[nodiscard]] std::unique_lock<std::recursive_mutex> holdWrites() const override {
    return std::unique_lock(writing_);
  }
  /// In one transaction.
  Result<void> writeTogether(const std::function<void()>& writes) override;
  /// Of the last write.
  [[nodiscard]] ErrorPtr saveError() const override;

  /// Reads all rows again. Of several with one key the first counts; the others are deleted.
  void updateSettings();

 private:
  using IDs = std::vector<NSManagedObjectID>;
  using Work = std::function<void(NSManagedObjectContext&)>;

  void removeKey(std::string_view key);
  Result<void> reload(NSManagedObjectContext& context);
  void deleteTwins();
  /// In a new background context, or within `writeTogether`, and saves what the work has changed.
  /// Returns why not, or null.
  ErrorPtr change(const Work& work);

  void didMerge(const Notification& notification);
  [[nodiscard]] std::set<std::string> knownKeys() const;
  [[nodiscard]] std::set<std::string> keysOf(const IDs& rows,
                                             NSManagedObjectContext& context) const;
  void follow(const Setting& setting) const;
  void decodingFailed(const DecodingError& error) const override;

  const CloudContainer container_;
  const SettingsStorage& settings_;
  /// Held for a whole write and a whole reading of all rows, so that memory and store never part.
  /// Reads don't wait for it.
  mutable std::recursive_mutex writing_;
  /// \name Guarded by `writing_`.
  /// @{
  ErrorPtr saveError_;
  std::shared_ptr<NSManagedObjectContext> writingTogether_;  // null outside that
  bool hasTwins_ = false;                                    // among the rows that were read last
  /// @}
  const DispatchQueue queue_{"velloro.domain.darwin-notificationcenter"};  // guards these two
  std::map<NSManagedObjectID, std::string> entities_;  // the key of each row that counts
  std::map<std::string, SettingValue, std::less<>> settingsByKey_;
  std::vector<NSNotificationCenter::Token> observers_;
};

}  // namespace velloro
